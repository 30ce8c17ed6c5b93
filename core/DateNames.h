// English names of the calendar, for reading and writing dates.
#pragma once

namespace korb {

inline constexpr const char *kWeekdayNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                "Thursday", "Friday", "Saturday"};
inline constexpr const char *kMonthNames[] = {"January", "February", "March",     "April",   "May",      "June",
                                              "July",    "August",   "September", "October", "November", "December"};

} // namespace korb
