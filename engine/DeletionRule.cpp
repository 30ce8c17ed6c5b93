#include "engine/DeletionRule.h"

#include "core/Failure.h"
#include "format/Damage.h"

namespace korb {

namespace {

/// A value without a time leaves that invalid.
bool ReadDate(const FileDeletion &record, int32_t current_year, DateTime &date) {
  return date.parse(record.value, false, current_year) && !date.date.is_invalid();
}

/// Below 0, 0 or above 0 for a file that is earlier than the value, of its time, or later. A value without a time means
/// the whole day.
int32_t CompareToDate(const FileDeletion &record, const FileDate &modified, int32_t current_year) {
  DateTime wanted;
  if (!ReadDate(record, current_year, wanted))
    CorruptInstaller(DamageCode::DeletionDate);
  const DateTime found = DateTime::from(modified);
  return wanted.time.is_invalid() ? found.date.compare(wanted.date) : found.compare(wanted);
}

int32_t CompareToSize(const FileDeletion &record, uint64_t size) {
  const int64_t found = static_cast<int64_t>(size);
  const int64_t wanted = record.value.to_int();
  return found < wanted ? -1 : (found > wanted ? 1 : 0);
}

} // namespace

bool IsDeletionReadable(const FileDeletion &record) {
  constexpr int32_t kYear = 2000; // a century decides about 29 February of a year 00 alone
  DateTime date;
  return record.kind < kDeleteDateEqual || record.kind > kDeleteDateUpTo || ReadDate(record, kYear, date);
}

bool IsDeletionDue(const FileDeletion &record, const FileDate &modified, uint64_t size, int32_t current_year) {
  switch (record.kind) {
  case kDeleteDateEqual:
    return CompareToDate(record, modified, current_year) == 0;
  case kDeleteDateFrom:
    return CompareToDate(record, modified, current_year) >= 0;
  case kDeleteDateUpTo:
    return CompareToDate(record, modified, current_year) <= 0;
  case kDeleteSizeEqual:
    return CompareToSize(record, size) == 0;
  case kDeleteSizeFrom:
    return CompareToSize(record, size) >= 0;
  case kDeleteSizeUpTo:
    return CompareToSize(record, size) <= 0;
  default:
    return true;
  }
}

} // namespace korb
