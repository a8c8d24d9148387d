#pragma once

#include <map>
#include <string>
#include <vector>

namespace volbrin::faults {

/// How a run of the tool ended.
struct Ending {
  int status = -1;  ///< the exit status; -1 when a signal ended it
  int signal = 0;
  std::string out;  ///< what it printed
};

/// Runs the tool with these words and additions to its environment.
[[nodiscard]] Ending runTool(std::vector<std::string> words,
                             const std::map<std::string, std::string>& environment);

}  // namespace volbrin::faults
