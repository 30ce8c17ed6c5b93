// Where the reports of core/Failure.h end in a test program: thrown where the program would end, else dropped.
#pragma once

#include <cstdint>
#include <string>

namespace korb::test {

/// How a report would have ended the process.
struct TrappedFailure {
  std::string text; ///< what the box would say; empty for a quiet end
  int32_t code = 0; ///< damage code of CorruptInstaller, else 0
};

/// Calls of PumpMessages since the last ClearTrap.
extern int PumpCount;
void ClearTrap();

/// Runs `action` and gives the text of the report that ended it: empty when it came back, "exit" for a quiet end.
template <class Action>
std::string Trapped(Action action) {
  try {
    action();
  } catch (const TrappedFailure &failure) {
    return failure.text.empty() ? "exit" : failure.text;
  }
  return std::string();
}

/// Runs `action` and gives the damage code that ended it: 0 when it came back, -1 when something else ended it.
template <class Action>
int32_t TrappedCode(Action action) {
  try {
    action();
  } catch (const TrappedFailure &failure) {
    return failure.code != 0 ? failure.code : -1;
  }
  return 0;
}

} // namespace korb::test
