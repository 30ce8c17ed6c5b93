// Words of options: enums whose values are bits, so that a word can't be taken for another one's, nor for a number.
#pragma once

#include <type_traits>

namespace korb {

/// Makes an enum a word of options. The header that declares the enum says so of it:
///     template <> inline constexpr bool IsOptionWord<MoveOptions> = true;
/// Each word has a value of 0, which is called ..._NONE unless 0 means something: calls that want no option leave the
/// argument out where it comes last.
template <class T>
inline constexpr bool IsOptionWord = false;

template <class T>
using IfOptionWord = std::enable_if_t<IsOptionWord<T>, T>;

template <class T>
constexpr IfOptionWord<T> operator|(T a, T b) {
  using Bits = std::underlying_type_t<T>;
  return static_cast<T>(static_cast<Bits>(a) | static_cast<Bits>(b));
}

template <class T>
constexpr IfOptionWord<T> operator&(T a, T b) {
  using Bits = std::underlying_type_t<T>;
  return static_cast<T>(static_cast<Bits>(a) & static_cast<Bits>(b));
}

template <class T>
constexpr IfOptionWord<T> operator~(T a) {
  return static_cast<T>(~static_cast<std::underlying_type_t<T>>(a));
}

template <class T>
constexpr IfOptionWord<T> &operator|=(T &a, T b) {
  return a = a | b;
}

template <class T>
constexpr IfOptionWord<T> &operator&=(T &a, T b) {
  return a = a & b;
}

} // namespace korb
