#include "Commands.hpp"

#include <array>
#include <utility>

namespace volbrin::cli {

CommandFunction functionOf(std::string_view command) {
  static constexpr std::array<std::pair<std::string_view, CommandFunction>, 14> functions = {{
      {"status", status},
      {"scan", scan},
      {"plan", plan},
      {"explain", explain},
      {"usage", usage},
      {"compare", compare},
      {"apps", apps},
      {"owner", owner},
      {"clean", clean},
      {"undo", undo},
      {"history", history},
      {"icloud scan", cloudScan},
      {"icloud clean", cloudClean},
      {"catalog check", catalogCheck},
  }};
  for (const auto& [name, function] : functions) {
    if (name == command) return function;
  }
  return nullptr;
}

}  // namespace volbrin::cli
