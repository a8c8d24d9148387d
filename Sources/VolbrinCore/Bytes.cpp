#include "Bytes.hpp"

#include <unistd.h>

#include <cstdlib>
#include <string>

namespace volbrin {

void overflowFault(std::string_view what) {
  std::string line = "volbrin: overflow of a signed 64-bit byte count: ";
  line.append(what).append("\n");
  // write(2) and not a stream: the process may be in any state, on any thread.
  [[maybe_unused]] const auto written = ::write(STDERR_FILENO, line.data(), line.size());
  std::abort();
}

bool fitsByteCount(double value) {
  // 2^63 is exact in a double; the greatest ByteCount is not.
  constexpr double limit = 9223372036854775808.0;
  return value < limit && value >= -limit;
}

ByteCount scaledBytes(ByteCount bytes, double factor, std::string_view what) {
  const double product = static_cast<double>(bytes) * factor;
  if (!fitsByteCount(product)) overflowFault(what);
  return static_cast<ByteCount>(product);
}

}  // namespace volbrin
