// Any text as a format, with arguments of each kind: no argument is read that is not there, and the result is a text of
// at most 65,535 bytes.
#include <cstdlib>
#include <cstring>
#include <string>

#include "core/String.h"

using namespace korb;

namespace {

void Check(const String &text) {
  if (text.length() > 65535 || memchr(text.c_str(), 0, static_cast<size_t>(text.length())) != nullptr)
    abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const std::string format(reinterpret_cast<const char *>(data), size);
  double real = 1.0 / 3;
  memcpy(&real, data, size < sizeof real ? size : sizeof real); // any bits
  Check(str_format(format.c_str()));
  Check(str_format(format.c_str(), "text", 42));
  Check(str_format(format.c_str(), -1, format.c_str()));
  Check(str_format(format.c_str(), real, real, real));
  Check(str_format(format.c_str(), uint64_t{1} << 63, 'c', String(format.c_str())));
  return 0;
}
