// The date of a file, as archives and the file layer hold it.
#pragma once

#include <cstdint>

namespace korb {

/// Local time. A month of 0 means that there is no date. 24 bytes, stored as they stand.
struct FileDate {
  int32_t year;
  int32_t month;
  int32_t day;
  int32_t hour;
  int32_t minute;
  int32_t second;

  bool has_date() const { return month != 0; }
};

/// Field by field, from the year down: -1, 0 or 1.
int32_t CompareFileDates(const FileDate &a, const FileDate &b);

} // namespace korb
