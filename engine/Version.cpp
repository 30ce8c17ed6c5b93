#include "engine/Version.h"

#include "core/Text.h"

namespace korb {

namespace {

constexpr int32_t kComponentWidth = 10;

/// Walks the numbers of a version text and remembers its last letter on the way.
class VersionReader {
public:
  explicit VersionReader(const char *text) : text_(text) {}

  /// The next number, or false at the end. One that does not fit wraps.
  bool Next(int32_t &number) {
    for (; *text_ != '\0'; ++text_) {
      if (is_digit(*text_)) {
        number = TakeNumber();
        return true;
      }
      NoteLetter();
      // ".5" is 0.5; a dot anywhere later only separates.
      if (*text_ == '.' && !has_numbers_) {
        ++text_;
        has_numbers_ = true;
        number = 0;
        return true;
      }
    }
    return false;
  }

  /// The last letter, or 0. Complete once Next was false.
  int8_t letter() const { return letter_; }

private:
  int32_t TakeNumber() {
    uint32_t value = 0;
    for (; is_digit(*text_); ++text_)
      value = value * 10 + static_cast<uint32_t>(*text_ - '0');
    NoteLetter();
    // What ended the number goes with it.
    if (*text_ != '\0')
      ++text_;
    has_numbers_ = true;
    return static_cast<int32_t>(value);
  }

  void NoteLetter() {
    if (is_alpha(*text_))
      letter_ = static_cast<int8_t>(*text_);
  }

  const char *text_;
  bool has_numbers_ = false;
  int8_t letter_ = 0;
};

} // namespace

int32_t CompareVersions(const char *a, const char *b) {
  VersionReader left(a);
  VersionReader right(b);
  while (true) {
    int32_t x = 0;
    int32_t y = 0;
    const bool has_x = left.Next(x);
    const bool has_y = right.Next(y);
    if (!has_x && !has_y)
      return left.letter() - right.letter();
    if (!has_x || !has_y)
      return has_x ? 1 : -1;
    if (x != y)
      return static_cast<int32_t>(static_cast<uint32_t>(x) - static_cast<uint32_t>(y));
  }
}

void NormaliseVersion(String &version) {
  if (version.is_empty())
    return;
  version.to_upper();
  int32_t start = 0;
  while (true) {
    int32_t end = version.find_char('.', start);
    const bool is_last = end < 0;
    if (is_last)
      end = version.length();
    const int32_t missing = kComponentWidth - (end - start);
    if (missing > 0) {
      version.insert_char('0', start, missing);
      end += missing;
    }
    if (is_last)
      return;
    start = end + 1;
  }
}

} // namespace korb
