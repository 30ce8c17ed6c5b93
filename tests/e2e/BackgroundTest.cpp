// What the window behind a run looks like, read back from the screen.
#include <algorithm>
#include <cstdlib>

#include "tests/support/Desktop.h"
#include "tests/support/Doctest.h"
#include "tests/support/PackedProduct.h"
#include "tests/support/TestInstaller.h"

using namespace korb::test;

namespace {

constexpr COLORREF kRed = RGB(255, 0, 0), kGreen = RGB(0, 255, 0), kBlue = RGB(0, 0, 255), kWhite = RGB(255, 255, 255);

/// What was on the screen at one moment.
class Screen {
public:
  Screen() {
    const HDC screen = GetDC(nullptr), copy = CreateCompatibleDC(screen);
    BITMAPINFO info{};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    // The copy lives as long as the test program.
    SelectObject(copy,
                 CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, reinterpret_cast<void **>(&pixels_), nullptr, 0));
    BitBlt(copy, 0, 0, width, height, screen, 0, 0, SRCCOPY);
    GdiFlush();
  }

  COLORREF At(int x, int y) const {
    const uint32_t pixel = pixels_[y * width + x];
    return RGB(pixel >> 16 & 0xFF, pixel >> 8 & 0xFF, pixel & 0xFF);
  }

  /// The right and bottom ends of the pixels above the middle that `wanted` holds for; -1 without any.
  template <class Test>
  POINT End(Test wanted) const {
    POINT end{-1, -1};
    for (int y = 0; y < height / 3; ++y)
      for (int x = 0; x < width; ++x)
        if (wanted(At(x, y))) {
          end.x = std::max<LONG>(end.x, x);
          end.y = y;
        }
    return end;
  }

  const int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);

private:
  uint32_t *pixels_ = nullptr;
};

/// Packs a picture that the packer would not take.
void PackPicture(PackedProduct &product, const std::string &picture) {
  product.PackSpoiled(
      [&](korb::packer::Product &spoiled) { spoiled.background.assign(picture.begin() + 14, picture.end()); });
}

/// The screen of a run that shows its notice.
Screen Look(const std::string &appearance, const std::string &title, const std::string &picture = std::string(),
            bool is_sound = true) {
  PackedProduct product(ProductManifest("look") + "main_title = \"" + title + "\"\n[appearance]\n" + appearance +
                        (picture.empty() || !is_sound ? "" : "\nbackground = \"picture.bmp\""));
  product.Write("picture.bmp", picture);
  if (is_sound)
    product.Pack();
  else
    PackPicture(product, picture);
  Process setup = product.Start();
  const auto notice = WaitForWindow("A notice.");
  REQUIRE(notice);
  Sleep(100);
  Screen screen;
  CHECK(Click(*notice, "Cancel"));
  CHECK(setup.Wait() == DWORD{1});
  CHECK(GetFileAttributesA("C:\\Program Files\\Look") == INVALID_FILE_ATTRIBUTES);
  return screen;
}

bool IsNear(COLORREF a, COLORREF b, int tolerance) {
  for (int shift = 0; shift < 24; shift += 8)
    if (std::abs(static_cast<int>(a >> shift & 0xFF) - static_cast<int>(b >> shift & 0xFF)) > tolerance)
      return false;
  return true;
}

/// A picture of four pixels: red and green over blue and white. `used` palette colours are told, not written.
std::string Picture(uint32_t header, uint16_t bits, uint32_t used = 0) {
  std::string block = Raw(header);
  block += header == 12 ? Raw<uint32_t>(0x00020002) : Raw<uint32_t>(2) + Raw<uint32_t>(2);
  block += Raw<uint16_t>(1) + Raw(bits);
  if (header == 40)
    block += Raw<uint32_t>(bits == 16 ? 3 : 0) + std::string(12, '\0') + Raw(used) + std::string(4, '\0');
  const COLORREF colors[] = {kBlue, kWhite, kRed, kGreen}; // rows stand upside down
  std::string pixels;
  if (bits == 8) {
    for (size_t i = 0; i < 256; ++i)
      block += Raw(static_cast<uint32_t>(GetBValue(colors[i % 4]) | GetGValue(colors[i % 4]) << 8 |
                                         GetRValue(colors[i % 4]) << 16))
                   .substr(0, 3);
    pixels = std::string("\0\1\0\0\2\3\0\0", 8);
  } else if (bits == 16) {
    block += Raw<uint32_t>(0xF800) + Raw<uint32_t>(0x07E0) + Raw<uint32_t>(0x001F);
    pixels = Raw<uint32_t>(0xFFFF001F) + Raw<uint32_t>(0x07E0F800);
  } else {
    pixels = std::string("\xFF\0\0\xFF\xFF\xFF\0\0\0\0\xFF\0\xFF\0\0\0", 16);
  }
  const uint32_t offset = static_cast<uint32_t>(14 + block.size());
  return "BM" + Raw(static_cast<uint32_t>(offset + pixels.size())) + Raw<uint32_t>(0) + Raw(offset) + block + pixels;
}

const char kGradient[] = "top_color = \"#FF0000\"\nbottom_color = \"#0000FF\"";

void CheckGradient(const Screen &screen) {
  for (const int part : {0, 1, 2, 3, 4}) {
    CAPTURE(part);
    const COLORREF shade = RGB(255 - part * 255 / 4, 0, part * 255 / 4);
    for (const int x : {0, screen.width - 1})
      CHECK(IsNear(screen.At(x, part * (screen.height - 1) / 4), shade, 3));
  }
}

/// Takes the library of gradients from the program that is named setup.exe, where this Windows can do that.
class WithoutGradients {
public:
  WithoutGradients() { SetRegistryText(HKEY_CURRENT_USER, kKey, "msimg32", ""); }
  ~WithoutGradients() { RegDeleteKeyA(HKEY_CURRENT_USER, kKey); }

private:
  static constexpr char kKey[] = "Software\\Wine\\AppDefaults\\setup.exe\\DllOverrides";
};

} // namespace

TEST_CASE("without a picture the background is one colour, or a gradient, with the system's help and without") {
  const Screen plain = Look("top_color = \"#123456\"\nbottom_color = \"#123456\"", "");
  for (const int y : {0, plain.height / 2, plain.height - 1})
    CHECK(plain.At(plain.width - 1, y) == RGB(0x12, 0x34, 0x56));
  const Screen gradient = Look(kGradient, "");
  CheckGradient(gradient);
  const Screen bands = [] {
    WithoutGradients none;
    return Look(kGradient, "");
  }();
  CheckGradient(bands);
  if (GetProcAddress(GetModuleHandleA("ntdll.dll"), "wine_get_version")) {
    CHECK(gradient.At(0, 0) == kRed);
    CHECK(bands.At(0, 0) == RGB(254, 0, 1)); // the first band is a step past the colour
    CHECK(bands.At(0, 1) == bands.At(0, 0));
    CHECK(bands.At(0, 2) != bands.At(0, 0));
  }
}

// Where the pixels of each kind of picture begin is told by ui_DibImageTest.
TEST_CASE("a picture fills the background, and one that is cut short leaves it to the colours") {
  const struct {
    const char *what;
    uint32_t header;
    uint16_t bits;
    uint32_t used;
    bool shown;
  } rows[] = {{"old header, palette", 12, 8, 0, true},
              {"masks", 40, 16, 0, true},
              {"true colour", 40, 24, 0, true},
              {"pixels run out of the block", 40, 24, 1, false}};
  for (const auto &row : rows) {
    CAPTURE(row.what);
    const Screen screen = Look("top_color = \"#00FFFF\"", "", Picture(row.header, row.bits, row.used), row.shown);
    const COLORREF colors[] = {kRed, kGreen, kBlue, kWhite};
    for (int i = 0; i < 4; ++i)
      CHECK(screen.At(screen.width / 40 * (i % 2 ? 39 : 1), screen.height / 10 * (i / 2 ? 6 : 4)) ==
            (row.shown ? colors[i] : RGB(0, 255, 255)));
  }
}

TEST_CASE("pixels that begin outside the picture end the run with one report") {
  PackedProduct product(ProductManifest("look"));
  PackPicture(product, Picture(40, 24, 1000000));
  Process setup = product.Start();
  AnswerWindow("FATAL ERROR", "OK");
  CHECK(setup.Wait() == DWORD{1});
}

TEST_CASE("the title has its shadow, its lines and a size that fits") {
  const auto look = [](const char *shadow, const std::string &title) {
    return Look(std::string("top_color = \"#FFFFFF\"\ntitle_color = \"#FF0000\"\ntitle_shadow = ") + shadow, title);
  };
  const auto red = [](COLORREF pixel) { return GetRValue(pixel) > 127 && GetGValue(pixel) < 128; };
  const auto black = [](COLORREF pixel) { return GetRValue(pixel) < 128; };
  const Screen plain = look("0", "HAN");
  const POINT end = plain.End(red);
  CHECK(end.x > 20);
  CHECK(plain.End(black).x == -1);
  const Screen shadowed = look("7", "HAN");
  CHECK(shadowed.End(red).x == end.x);
  CHECK(shadowed.End(black).x == end.x + 7);
  CHECK(shadowed.End(black).y == end.y + 7);

  const HDC screen = GetDC(nullptr);
  const int line = GetDeviceCaps(screen, LOGPIXELSY) * 26 / 72;
  ReleaseDC(nullptr, screen);
  const POINT lines = look("0", "HAN\\nHAN").End(red);
  CHECK(lines.x == end.x);
  CHECK(lines.y == end.y + line);

  // One run of text decides on the size, whatever its lines.
  const POINT shrunk = look("0", std::string(45, 'H')).End(red);
  CHECK(shrunk.y < end.y);
  CHECK(shrunk.x > plain.width / 2);
  CHECK(shrunk.x < plain.width);
  CHECK(look("0", std::string(22, 'H') + "\\n" + std::string(22, 'H')).End(red).x < shrunk.x);
  const POINT endless = look("0", std::string(400, 'H')).End(red);
  CHECK(endless.x > plain.width - 8); // the last letter is cut, or its edge
  CHECK(endless.y < shrunk.y);
}
