// Any text as a date, a time, a number and a format of dates: reading stops inside the text, and a date that the
// calendar has is read back from what was written of it.
#include <cstdlib>
#include <string>

#include "core/Date.h"

using namespace korb;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string text(reinterpret_cast<const char *>(data), size);
  const char *const end = text.c_str() + text.size();
  for (const bool day_first : {false, true}) {
    const char *at = text.c_str();
    Date date;
    if (date.parse(at, day_first, 2025) && !date.is_invalid() && date.year > 100) {
      const String written = date.format("m/d/yy");
      Date back;
      const char *again = written.c_str();
      if (!back.parse(again, false, 2025) || back.compare(date) != 0 || *again != '\0')
        abort();
    }
    if (at > end)
      abort();
    DateTime moment;
    moment.parse(text.c_str(), day_first, 2025);
    moment.format(text.c_str());
  }
  const char *at = text.c_str();
  Time time;
  if (time.parse(at) == time.is_invalid() || at > end)
    abort();
  const String whole(text.data(), static_cast<int32_t>(text.size()));
  for (int32_t pos = 0; !whole.is_out_of_range(pos); ++pos) {
    const int32_t before = pos;
    whole.parse_int(&pos);
    if (pos < before || pos > whole.length())
      abort();
  }
  whole.to_int64();
  return 0;
}
