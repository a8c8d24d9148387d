#pragma once

#include <string>
#include <vector>

namespace volbrin::bench {

/// What one run of a program cost.
struct Cost {
  double seconds = 0;        ///< by the clock
  double userSeconds = 0;    ///< of processor time, all threads
  double systemSeconds = 0;  ///< of processor time in the kernel, all threads
  double peakMegabytes = 0;  ///< most memory held at a time, in units of 10^6 bytes
  bool succeeded = false;
};

/// Runs a program by argument vector, its output thrown away, and says what it cost (wait4(2)).
[[nodiscard]] Cost run(const std::vector<std::string>& arguments);

/// Whether the program is on the PATH.
[[nodiscard]] bool isInstalled(const std::string& program);

/// The costs that stand in the middle of `runs`, each figure by itself.
[[nodiscard]] Cost median(const std::vector<Cost>& runs);

}  // namespace volbrin::bench
