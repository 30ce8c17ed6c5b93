#include "core/Clock.h"
#include "core/Windows.h"

namespace korb {

DateTime Now() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  return DateTime::from(FileDate{now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond});
}

} // namespace korb
