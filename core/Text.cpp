#include "core/Text.h"

#include <cstring>

namespace korb {

namespace {

/// Reads the sign at `p`, if one may stand there: true for a minus.
bool SkipSign(const char *&p) {
  const bool negative = *p == '-';
  if (negative || *p == '+')
    ++p;
  return negative;
}

const char *OrEmpty(const char *p) {
  return p ? p : "";
}

} // namespace

int32_t text_length(const char *p) {
  return p ? static_cast<int32_t>(strlen(p)) : 0;
}

char text_last_char(const char *p) {
  const int32_t length = text_length(p);
  return length > 0 ? p[length - 1] : '\0';
}

const char *text_skip_space(const char *p) {
  p = OrEmpty(p);
  while (is_space(*p))
    ++p;
  return p;
}

const char *text_find_any(const char *p, const char *set) {
  if (!p || !set)
    return nullptr;
  while (*p && !strchr(set, *p))
    ++p;
  return p;
}

bool text_cut_at(char *p, char c) {
  char *found = p ? strchr(p, c) : nullptr;
  if (!found)
    return false;
  *found = '\0';
  return true;
}

void text_blank_spaces(char *p) {
  for (int32_t i = text_length(p); i-- > 0;)
    if (is_space(p[i]))
      p[i] = '\0';
}

int64_t text_to_int64(const char *p) {
  p = OrEmpty(p);
  const bool negative = SkipSign(p);
  uint64_t value = 0;
  for (; is_digit(*p); ++p)
    value = value * 10 + static_cast<uint64_t>(*p - '0');
  return static_cast<int64_t>(negative ? 0 - value : value);
}

double text_to_double(const char *p) {
  p = OrEmpty(p);
  const bool negative = SkipSign(p);
  double value = 0;
  for (; is_digit(*p); ++p)
    value = value * 10 + (*p - '0');
  if (*p == '.') {
    double divisor = 10;
    for (++p; is_digit(*p); ++p, divisor *= 10)
      value += (*p - '0') / divisor;
  }
  return negative ? -value : value;
}

int32_t text_skip_number(const char *&p, NumberOptions flags) {
  if (!p)
    return 0;
  if (flags & NUMBER_SKIP_SPACE)
    p = text_skip_space(p);
  const bool negative = !(flags & NUMBER_NO_SIGN) && SkipSign(p);
  const char *digits = p;
  uint32_t value = 0;
  for (; is_digit(*p); ++p)
    value = value * 10 + static_cast<uint32_t>(*p - '0');
  if (p != digits) {
    if (flags & NUMBER_SKIP_SPACE_AFTER)
      p = text_skip_space(p);
    if ((flags & NUMBER_SKIP_COMMA) && *p == ',') {
      ++p;
      if (flags & NUMBER_SKIP_SPACE_AFTER)
        p = text_skip_space(p);
    }
  }
  return static_cast<int32_t>(negative ? 0 - value : value);
}

int32_t text_compare_no_case(const char *a, const char *b, int32_t n) {
  for (; n > 0; --n, ++a, ++b) {
    const int32_t difference = to_lower_char(static_cast<uint8_t>(*a)) - to_lower_char(static_cast<uint8_t>(*b));
    if (difference != 0 || *a == '\0')
      return difference;
  }
  return 0;
}

bool IsBlank(const char *text) {
  return *text_skip_space(text) == '\0';
}

} // namespace korb
