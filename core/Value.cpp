#include "core/Value.h"

#include "core/Number.h"

namespace korb {

String Value::to_string() const {
  switch (kind_) {
  case Kind::None:
    return String();
  case Kind::Integer:
    return string_from_int64(integer_);
  case Kind::Double:
    return FormatDouble(real_, -1);
  case Kind::Text:
    return text_;
  case Kind::Date:
    return moment_.date.format_plain("m/d/yy");
  case Kind::Time:
    return moment_.time.format("HH:ii:ss");
  case Kind::DateTime:
    return moment_.time.is_invalid() ? moment_.date.format_plain("m/d/yy") : moment_.format_plain("m/d/yy HH:ii:ss");
  }
  return String();
}

int32_t Value::to_int() const {
  switch (kind_) {
  case Kind::Integer:
    return static_cast<int32_t>(integer_);
  case Kind::Double:
    return real_ > -2147483649.0 && real_ < 2147483648.0 ? static_cast<int32_t>(real_) : 0;
  case Kind::Text:
    return text_.to_int();
  default:
    return 0;
  }
}

bool Value::to_boolean() const {
  return kind_ == Kind::Text ? to_bool(text_) : (kind_ == Kind::Double ? real_ != 0 : integer_ != 0);
}

} // namespace korb
