#include "Target.hpp"

#include <cerrno>
#include <system_error>
#include <vector>

#include "../Files.hpp"
#include "../Paths.hpp"

namespace volbrin {

bool isTaken(const std::string& path) { return exists(path) || isSymlink(path); }

HeldItem prepareTarget(const std::string& path) {
  std::string anchor(parentFolder(path));
  std::vector<std::string> missing;  // from the bottom
  HeldItem target{holdFolder(anchor), std::string(lastComponent(path))};
  while (!target.folder && errno == ENOENT && anchor != "/") {
    missing.emplace_back(lastComponent(anchor));
    anchor = parentFolder(anchor);
    target.folder = holdFolder(anchor);
  }
  if (!target.folder) throw std::system_error(errno, std::generic_category(), anchor);
  for (auto name = missing.rbegin(); name != missing.rend(); ++name) {
    target.folder = makeFolderBelow(target.folder, *name, 0777);
  }
  return target;
}

}  // namespace volbrin
