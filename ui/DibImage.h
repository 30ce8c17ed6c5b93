// A picture as it travels in an archive: a BMP file without its 14-byte file header.
//
//      BITMAPCOREHEADER                    BITMAPINFOHEADER
//   0  u32 12                           0  u32 40
//   4  u16 width                        4  i32 width
//   6  u16 height                       8  i32 height, negative: the top row comes first
//  10  u16 bits of a pixel             14  u16 bits of a pixel
//      palette of 3-byte colours       16  u32 compression; 3 puts three masks after the header
//      pixels                          20  u32 bytes of a compressed picture
//                                      32  u32 palette colours, 0: all that the bits can name
//                                          palette of 4-byte colours, pixels
//
// Numbers are little-endian. Pixels are never decoded here: the block goes to the system as it stands. The system
// trusts it, so a block that ends before its pixels do is never handed on.
#pragma once

#include <cstdint>

#include "core/String.h"

struct HDC__;
struct tagRECT;

namespace korb {

class DibImage {
public:
  /// Bytes of a BMP file before the block: "BM", u32 bytes of the file, two u16 0, u32 place of the pixels.
  static constexpr int32_t kFileHeader = 14;

  void clear() { *this = DibImage(); }
  /// Nothing to draw.
  bool is_empty() const { return width < 1; }
  /// Reads the fields from a header of which `n` bytes are there. Null, another kind of header and one that is cut off
  /// clear them; the block stays.
  void parse_header(const char *p, int32_t n);
  /// Copies and parses a block, which may hold anything. Null, `n` below 1 and a heap that refuses change nothing.
  void set_block(const char *p, int32_t n);
  /// Parses the block again; one that no header fits in clears everything. True when there is something to draw.
  bool parse();
  /// False when the pixels begin inside the block and end outside of it.
  bool has_all_pixels() const;

  /// Takes the picture of a BMP file; "bmp" is the default extension. False when it is none or shows nothing: the image
  /// is then of no use.
  bool load(const char *path);
  /// Writes a BMP file over whatever is there. False when it can't be opened or written.
  bool save(const char *path) const;

  /// Stretches the picture over all of `rect`, both its edges included; `rop` is a raster operation of the system.
  /// Nothing is drawn without a context, a picture or all of its pixels. Pixels that begin outside the block end the
  /// process; the image is empty by then, since whoever shows the report draws again.
  void draw(HDC__ *hdc, const tagRECT &rect, uint32_t rop);
  static int32_t pixel_width(const tagRECT &rect);
  static int32_t pixel_height(const tagRECT &rect);

  int32_t width = 0;
  int32_t height = 0;      ///< as stored
  int32_t bit_count = 0;   ///< bits of a pixel
  int32_t color_count = 0; ///< entries of the palette, as stored
  int32_t color_size = 0;  ///< bytes of an entry
  int32_t bits_offset = 0; ///< where the pixels begin in the block; 0x7FFFFFFF where 32 bits can't tell
  String block;
};

} // namespace korb
