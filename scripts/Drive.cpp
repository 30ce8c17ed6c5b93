// drive STEP...: answers the windows of another program, and tells what it saw.
//
//   wait:WORDS     waits for a window with these words in its title or any text, and prints it
//   click:BUTTON   clicks a button of that window, by its text or number
//   list           prints all windows
//   run:COMMAND    runs a command line, as the system would, to its end
//   within:MS      how long later steps wait, 20000 at first
//
// Ends with 1, and prints all windows, at the first step that can't be done.
#include <cstdio>
#include <cstdlib>

#include "tests/support/Desktop.h"
#include "tests/support/Process.h"

using namespace korb::test;

namespace {

void Print(const Window &window) {
  std::fputs(window.Describe().c_str(), stdout);
}

class Driver {
public:
  bool Step(const std::string &step) {
    const size_t colon = step.find(':');
    const std::string verb = step.substr(0, colon), rest = colon == std::string::npos ? "" : step.substr(colon + 1);
    if (verb == "within") {
      time_ = std::atoi(rest.c_str());
    } else if (verb == "list") {
      for (const Window &window : OpenWindows())
        Print(window);
    } else if (verb == "run") {
      Run(rest);
    } else if (verb == "wait") {
      window_ = WaitForWindow(rest, time_);
      if (window_)
        Print(*window_);
      return window_.has_value();
    } else {
      return verb == "click" && window_ && Click(*window_, rest);
    }
    return true;
  }

private:
  std::optional<Window> window_;
  int time_ = 20000;
};

} // namespace

int main(int argc, char **argv) {
  Driver driver;
  for (int i = 1; i < argc; ++i) {
    if (driver.Step(argv[i]))
      continue;
    std::printf("can't do %s; there are:\n", argv[i]);
    for (const Window &window : OpenWindows())
      Print(window);
    return 1;
  }
  return 0;
}
