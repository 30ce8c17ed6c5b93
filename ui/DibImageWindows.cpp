#include "core/Windows.h"
#include "files/DiskFile.h"
#include "files/PathText.h"
#include "ui/DibImage.h"

namespace korb {

bool DibImage::load(const char *path) {
  String name = path;
  AddDefaultExtension(name, "bmp");
  DiskFile file;
  char header[kFileHeader];
  if (file.Open(name, DF_OPEN_EXISTING | DF_NO_WRITE, FILE_ATTRIBUTE_NORMAL) != OPEN_OK ||
      !file.Read(header, kFileHeader) || header[0] != 'B' || header[1] != 'M')
    return false;
  const int32_t size = file.Size() - kFileHeader;
  return block.try_set_length(size) && file.Read(block.data(), size) && parse();
}

bool DibImage::save(const char *path) const {
  DiskFile file;
  if (file.Open(path, DF_CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL) != OPEN_OK)
    return false;
  String header("BM", 2);
  header.set_length(kFileHeader);
  header.put_dword(2, static_cast<uint32_t>(block.length() + kFileHeader));
  header.put_dword(10, static_cast<uint32_t>(bits_offset) + kFileHeader);
  return file.WriteString(header) && file.WriteString(block);
}

void DibImage::draw(HDC hdc, const RECT &rect, uint32_t rop) {
  if (!hdc || is_empty() || !has_all_pixels())
    return;
  const int32_t offset = bits_offset;
  if (block.is_out_of_range(offset))
    clear();
  StretchDIBits(hdc, rect.left, rect.top, pixel_width(rect), pixel_height(rect), 0, 0, width, height, &block.at(offset),
                reinterpret_cast<const BITMAPINFO *>(block.data()), DIB_RGB_COLORS, rop);
}

int32_t DibImage::pixel_width(const RECT &rect) {
  return rect.right - rect.left + 1;
}

int32_t DibImage::pixel_height(const RECT &rect) {
  return rect.bottom - rect.top + 1;
}

} // namespace korb
