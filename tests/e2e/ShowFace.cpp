// Tells what the system shows of programs: from their version, and the colours in the middle of their icons.
#include <cstdio>
#include <string>

#include <windows.h>

#include <shellapi.h>

namespace {

void ShowVersion(const char *program) {
  std::string block(GetFileVersionInfoSizeA(program, nullptr), '\0');
  if (!GetFileVersionInfoA(program, 0, static_cast<DWORD>(block.size()), block.data()))
    return;
  VS_FIXEDFILEINFO *fixed;
  UINT length;
  if (VerQueryValueA(block.data(), "\\", reinterpret_cast<void **>(&fixed), &length))
    std::printf("numbers: %lu.%lu\n", fixed->dwFileVersionMS >> 16, fixed->dwFileVersionMS & 0xFFFF);
  for (const wchar_t *name :
       {L"CompanyName", L"FileDescription", L"FileVersion", L"OriginalFilename", L"ProductName"}) {
    wchar_t *text;
    const std::wstring place = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
    if (VerQueryValueW(block.data(), place.c_str(), reinterpret_cast<void **>(&text), &length))
      std::printf("%ls: %ls\n", name, text);
  }
}

void ShowIcon(const char *size, HICON icon) {
  ICONINFO info;
  BITMAP bitmap;
  if (!GetIconInfo(icon, &info) || GetObjectA(info.hbmColor, sizeof bitmap, &bitmap) == 0)
    return;
  const HDC dc = CreateCompatibleDC(nullptr);
  SelectObject(dc, info.hbmColor);
  std::printf("%s icon: %ld pixels, %06lX in the middle\n", size, bitmap.bmWidth,
              GetPixel(dc, bitmap.bmWidth / 2, bitmap.bmHeight / 2));
}

} // namespace

int main(int count, char **programs) {
  for (int i = 1; i < count; ++i) {
    std::printf("== %s\n", programs[i]);
    ShowVersion(programs[i]);
    HICON large, small;
    if (ExtractIconExA(programs[i], 0, &large, &small, 1) == 2) {
      ShowIcon("large", large);
      ShowIcon("small", small);
    }
  }
}
