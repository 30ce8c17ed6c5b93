#include "core/Value.h"

#include "core/Number.h"

namespace korb {

Value::Value(double value) : kind_(Kind::Double), text_(FormatDouble(value, -1)) {
  if (value > -2147483649.0 && value < 2147483648.0)
    number_ = static_cast<int32_t>(value);
  is_nonzero_ = value != 0;
}

Value::Value(const korb::Date &value) : kind_(Kind::Date), text_(value.format_plain("m/d/yy")) {}

Value::Value(const korb::Time &value) : kind_(Kind::Time), text_(value.format("HH:ii:ss")) {}

Value::Value(const korb::DateTime &value)
    : kind_(Kind::DateTime), text_(value.format_plain(value.time.is_invalid() ? "m/d/yy" : "m/d/yy HH:ii:ss")) {}

String Value::to_string() const {
  return kind_ == Kind::Integer ? string_from_int64(number_) : text_;
}

int32_t Value::to_int() const {
  return kind_ == Kind::Text ? text_.to_int() : static_cast<int32_t>(number_);
}

bool Value::to_boolean() const {
  return kind_ == Kind::Text ? to_bool(text_) : number_ != 0 || is_nonzero_;
}

} // namespace korb
