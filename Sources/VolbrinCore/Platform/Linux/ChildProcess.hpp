#pragma once

#include <optional>
#include <string>
#include <vector>

namespace volbrin {

/// Runs `program` (a path) with `arguments` behind it, without a shell, with empty input, its
/// standard error thrown away. Its standard output is read to the end, then it is waited for. The
/// output, bad UTF-8 repaired, when it ends with status 0; absent otherwise and when it can't
/// start.
[[nodiscard]] std::optional<std::string> outputOf(const std::string& program,
                                                  const std::vector<std::string>& arguments);

/// The first `<folder>/<tool>` that is an executable file: the folders of the environment variable
/// PATH first, then `more`. Absent for a name with a slash in it, and for an empty one.
[[nodiscard]] std::optional<std::string> findTool(const std::string& tool,
                                                  const std::vector<std::string>& more);

}  // namespace volbrin
