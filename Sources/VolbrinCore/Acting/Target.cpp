#include "Target.hpp"

#include <optional>
#include <system_error>
#include <vector>

#include "../Files.hpp"
#include "../Paths.hpp"

namespace volbrin {

bool isTaken(const std::string& path) { return exists(path) || isSymlink(path); }

HeldItem prepareTarget(const std::string& path) {
  std::string nearest = path;
  std::vector<std::string> missing;  // the folders above `path`, from the bottom
  std::optional<HeldItem> held;
  while (!held) {
    try {
      held = holdItem(nearest);
    } catch (const std::system_error& error) {
      if (error.code() != std::errc::no_such_file_or_directory) throw;
      nearest = parentFolder(nearest);
      missing.emplace_back(lastComponent(nearest));
    }
  }
  for (auto name = missing.rbegin(); name != missing.rend(); ++name) {
    held->folder = makeFolderBelow(held->folder, *name, 0777);
  }
  held->name = lastComponent(path);
  return std::move(*held);
}

}  // namespace volbrin
