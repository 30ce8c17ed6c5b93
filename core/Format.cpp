#include "core/Format.h"

#include <cstring>

#include "core/String.h"

namespace korb {

namespace {

/// The most that one formatted text holds, and the largest width and precision.
constexpr int32_t kMaxOutput = 65535;

/// One conversion as it is written in the format.
struct Conversion {
  bool left = false;
  bool zero = false;
  bool alternate = false;
  char sign = '\0'; ///< before a positive number
  int32_t width = 0;
  int32_t precision = -1; ///< -1: not given
  char letter = '\0';
};

/// Walks the format once; a false result anywhere means that the format and its arguments don't match.
class Formatter {
public:
  Formatter(const char *format, const FormatArgs &args) : at_(format), args_(args) {}

  bool Run();
  const String &text() const { return text_; }

private:
  bool ReadCount(int32_t &value);
  bool ReadConversion(Conversion &conversion);
  bool Put(const Conversion &conversion);
  bool PutInteger(const Conversion &conversion, const FormatArg &arg);
  bool PutReal(const Conversion &conversion, const FormatArg &arg);
  bool PutText(const Conversion &conversion, const FormatArg &arg);
  void PutField(const Conversion &conversion, const char *prefix, const char *body, int32_t length, bool zeros);
  const FormatArg *Next() { return used_ < args_.count ? &args_.args[used_++] : nullptr; }

  const char *at_;
  const FormatArgs &args_;
  int32_t used_ = 0;
  String text_;
};

bool IsInteger(const FormatArg &arg) {
  return arg.kind <= FormatArg::Kind::UInt64;
}

bool Formatter::Run() {
  // To the end even when there is more than will be kept: the rest may hold a fault. The arguments bound it all.
  while (*at_) {
    const char *percent = strchr(at_, '%');
    if (!percent) {
      text_ += at_;
      return true;
    }
    text_.append(at_, static_cast<int32_t>(percent - at_));
    at_ = percent + 1;
    if (*at_ == '%') {
      text_ += *at_++;
      continue;
    }
    Conversion conversion;
    if (!ReadConversion(conversion) || !Put(conversion))
      return false;
  }
  return true;
}

/// A width or precision: digits, or `*` for the next argument.
bool Formatter::ReadCount(int32_t &value) {
  int64_t count = 0;
  if (*at_ == '*') {
    ++at_;
    const FormatArg *arg = Next();
    if (!arg || !IsInteger(*arg))
      return false;
    count = arg->integer;
  } else {
    for (; is_digit(*at_); ++at_)
      if (count <= kMaxOutput)
        count = count * 10 + (*at_ - '0');
  }
  value = static_cast<int32_t>(count > kMaxOutput ? kMaxOutput : (count < -kMaxOutput ? -kMaxOutput : count));
  return true;
}

bool Formatter::ReadConversion(Conversion &conversion) {
  for (;; ++at_) {
    if (*at_ == '-')
      conversion.left = true;
    else if (*at_ == '0')
      conversion.zero = true;
    else if (*at_ == '#')
      conversion.alternate = true;
    else if (*at_ == '+' || *at_ == ' ')
      conversion.sign = conversion.sign == '+' ? '+' : *at_;
    else
      break;
  }
  if (!ReadCount(conversion.width))
    return false;
  if (conversion.width < 0) {
    conversion.left = true;
    conversion.width = -conversion.width;
  }
  if (*at_ == '.') {
    ++at_;
    if (!ReadCount(conversion.precision))
      return false;
  }
  // How wide an argument is travels with it.
  for (;;) {
    if (*at_ == 'h' || *at_ == 'l' || *at_ == 'L')
      ++at_;
    else if (strncmp(at_, "I64", 3) == 0)
      at_ += 3;
    else
      break;
  }
  conversion.letter = *at_;
  if (!conversion.letter)
    return false;
  ++at_;
  return true;
}

bool Formatter::Put(const Conversion &conversion) {
  const FormatArg *arg = Next();
  if (!arg)
    return false;
  switch (conversion.letter) {
  case 'd':
  case 'i':
  case 'u':
  case 'x':
  case 'X':
  case 'o':
    return PutInteger(conversion, *arg);
  case 'c':
  case 's':
    return PutText(conversion, *arg);
  case 'f':
  case 'e':
  case 'g':
    return PutReal(conversion, *arg);
  default:
    return false;
  }
}

/// `prefix` and `body` in a field of the conversion's width. Zeros go between the two, blanks around both.
void Formatter::PutField(const Conversion &conversion, const char *prefix, const char *body, int32_t length,
                         bool zeros) {
  const int32_t pad = conversion.width - text_length(prefix) - length;
  if (pad > 0 && !conversion.left && !zeros)
    text_.insert_char(' ', text_.length(), pad);
  text_ += prefix;
  if (pad > 0 && !conversion.left && zeros)
    text_.insert_char('0', text_.length(), pad);
  text_.append(body, length);
  if (pad > 0 && conversion.left)
    text_.insert_char(' ', text_.length(), pad);
}

bool Formatter::PutInteger(const Conversion &conversion, const FormatArg &arg) {
  if (!IsInteger(arg))
    return false;
  const bool is_64 = arg.kind == FormatArg::Kind::Int64 || arg.kind == FormatArg::Kind::UInt64;
  const char letter = conversion.letter;
  uint64_t value = static_cast<uint64_t>(arg.integer);
  bool negative = false;
  if (letter == 'd' || letter == 'i') {
    // The conversion decides about the sign, as it does in any printf.
    if (!is_64)
      value = static_cast<uint64_t>(static_cast<int64_t>(static_cast<int32_t>(value)));
    negative = static_cast<int64_t>(value) < 0;
    if (negative)
      value = 0 - value;
  } else if (!is_64) {
    value = static_cast<uint32_t>(value);
  }

  const uint32_t base = letter == 'o' ? 8 : (letter == 'x' || letter == 'X' ? 16 : 10);
  char digits[24];
  char *first = digits + sizeof digits;
  const char *alphabet = letter == 'X' ? "0123456789ABCDEF" : "0123456789abcdef";
  uint64_t rest = value;
  while (rest != 0) {
    *--first = alphabet[rest % base];
    rest /= base;
  }
  if (value == 0 && conversion.precision != 0)
    *--first = '0';
  int32_t length = static_cast<int32_t>(digits + sizeof digits - first);

  char prefix[3] = {};
  if (letter == 'd' || letter == 'i')
    prefix[0] = negative ? '-' : conversion.sign;
  else if (conversion.alternate && base == 16 && value != 0)
    prefix[0] = '0', prefix[1] = letter;
  String body;
  int32_t zeros = conversion.precision - length;
  if (conversion.alternate && base == 8 && zeros < 1 && (length == 0 || *first != '0'))
    zeros = 1;
  if (zeros > 0)
    body.insert_char('0', 0, zeros);
  body.append(first, length);
  PutField(conversion, prefix, body, body.length(), conversion.zero && conversion.precision < 0);
  return true;
}

bool Formatter::PutReal(const Conversion &conversion, const FormatArg &arg) {
  if (arg.kind != FormatArg::Kind::Double || !FormatArg::print_real)
    return false;
  String body;
  bool negative;
  const bool finite = FormatArg::print_real(arg.real, body, negative, conversion.letter,
                                            conversion.precision < 0 ? 6 : conversion.precision, conversion.alternate);
  const char prefix[2] = {negative ? '-' : conversion.sign, '\0'};
  PutField(conversion, prefix, body, body.length(), conversion.zero && finite);
  return true;
}

bool Formatter::PutText(const Conversion &conversion, const FormatArg &arg) {
  if (conversion.letter == 'c') {
    if (!IsInteger(arg))
      return false;
    const char c = static_cast<char>(arg.integer);
    PutField(conversion, "", &c, 1, false);
    return true;
  }
  if (arg.kind != FormatArg::Kind::Text)
    return false;
  const char *text = arg.text ? arg.text : "";
  const int32_t limit =
      conversion.precision < 0 || conversion.precision > kMaxOutput ? kMaxOutput : conversion.precision;
  int32_t length = 0;
  while (length < limit && text[length])
    ++length;
  PutField(conversion, "", text, length, false);
  return true;
}

} // namespace

FormatArg::FormatArg(const String &value) : kind(Kind::Text), text(value.c_str()) {}

void AppendFormat(String &out, const char *format, const FormatArgs &args) {
  if (!format)
    return;
  Formatter formatter(format, args);
  String text;
  text.assign_limited(formatter.Run() ? formatter.text().c_str() : format, kMaxOutput);
  out += text;
}

} // namespace korb
