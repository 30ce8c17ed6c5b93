// A value of one of several kinds, as the registry layer reads and writes it.
#pragma once

#include <cstdint>

#include "core/Date.h"
#include "core/String.h"

namespace korb {

class Value {
public:
  enum class Kind : uint8_t { None, Integer, Double, Text, Date, Time, DateTime };

  Value() = default;
  Value(int64_t value) : kind_(Kind::Integer), number_(value) {}
  Value(const char *value) : kind_(Kind::Text), text_(value) {}
  Value(const String &value) : kind_(Kind::Text), text_(value) {}
  // These make their text at once: a program that has no such values need not carry what writes them.
  Value(double value);
  Value(const korb::Date &value);
  Value(const korb::Time &value);
  Value(const korb::DateTime &value);

  Kind kind() const { return kind_; }
  /// Decimal, "2.5", the text, "m/d/yy", "HH:ii:ss" or both; without a time just the date. None is empty.
  String to_string() const;
  /// The low 32 bits, the double cut off, the number in the text; 0 for the others.
  int32_t to_int() const;
  /// A number other than 0, a text by to_bool; false for the others.
  bool to_boolean() const;

private:
  Kind kind_ = Kind::None;
  bool is_nonzero_ = false; ///< a double whose number may be 0
  int64_t number_ = 0;
  String text_;
};

} // namespace korb
