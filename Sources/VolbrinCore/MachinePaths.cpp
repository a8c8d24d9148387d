#include "MachinePaths.hpp"

namespace volbrin {

std::string absolutePath(std::string_view written, std::string_view root, std::string_view home) {
  if (written == "~") return std::string(home);
  if (written.starts_with("~/")) return std::string(home) + std::string(written.substr(1));
  return std::string(root) + std::string(written);
}

std::string displayedPath(std::string_view path, std::string_view root, std::string_view home) {
  if (path == home) return "~";
  if (path.size() > home.size() && path.starts_with(home) && path[home.size()] == '/') {
    return "~" + std::string(path.substr(home.size()));
  }
  if (!root.empty() && path.starts_with(root)) {
    return path == root ? "/" : std::string(path.substr(root.size()));
  }
  return std::string(path);
}

}  // namespace volbrin
