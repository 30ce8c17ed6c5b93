// Building text from a printf format, by kind.
//
// Formats come from an archive's texts, so they are data and not to be trusted. Each argument travels with its kind; a
// conversion that asks for an argument that was not passed, or for one of another kind, makes the whole result the
// format itself. No format can read memory that was not passed.
#pragma once

#include <cstdint>
#include <type_traits>

namespace korb {

class String;

/// One argument of a format and what it is.
struct [[gnu::packed, gnu::aligned(4)]] FormatArg {
  enum class Kind : uint8_t { Int32, UInt32, Int64, UInt64, Double, Text };

  Kind kind;
  union {
    int64_t integer;
    double real;
    const char *text; ///< null prints as an empty text
  };

  FormatArg() : kind(Kind::Int32), integer(0) {}
  FormatArg(double value); ///< sets print_real: a program that passes no double need not carry the digits of one
  FormatArg(const char *value) : kind(Kind::Text), text(value) {}
  FormatArg(const String &value);

  /// Any integer, char among them; those below 32 bits are widened.
  template <class T, class = std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T>>>
  FormatArg(T value)
      : kind(sizeof(T) == 8 ? (std::is_signed_v<T> ? Kind::Int64 : Kind::UInt64)
                            : (std::is_unsigned_v<T> ? Kind::UInt32 : Kind::Int32)),
        integer(static_cast<int64_t>(value)) {}

  /// Appends a double without its sign, as DecimalDigits::Print does; false when it is not finite.
  using PrintReal =
      bool (*)(double value, String &out, bool &negative, char letter, int32_t precision, bool keep_point);
  static inline PrintReal print_real = nullptr;
};

/// Arguments in their order. Points at what the caller holds for the length of one call.
struct FormatArgs {
  const FormatArg *args;
  int32_t count;
};

/// The arguments of one call, packed with their kinds: integers, char, double, `const char *` and String.
template <unsigned N>
struct PackedArgs : FormatArgs {
  template <class... T>
  explicit PackedArgs(const T &...values) : FormatArgs{slots_, static_cast<int32_t>(N)}, slots_{FormatArg(values)...} {}
  PackedArgs(const PackedArgs &) = delete;

private:
  FormatArg slots_[N == 0 ? 1 : N];
};

/// Appends the formatted text to `out`. Conversions: `%d %i %u %x %X %o %c` of an integer of either sign and any width
/// (the modifiers h, l, ll, L, I64 are read and don't matter), `%s` of a text, `%f %e %g` of a double, `%%`; with the
/// flags `- + 0 # space`, a width and a precision, `*` for either. The result ends at its first NUL and at 65,535
/// bytes. A format that does not match its arguments is appended as it stands. A null format is empty.
void AppendFormat(String &out, const char *format, const FormatArgs &args);

} // namespace korb
