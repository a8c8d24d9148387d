#include "Paths.hpp"

#include <vector>

#include "Text.hpp"

namespace volbrin {

bool isInside(std::string_view path, std::string_view folder) {
  if (folder == "/") return path.size() > 1 && path.front() == '/';
  return path.size() > folder.size() && path.starts_with(folder) && path[folder.size()] == '/';
}

bool isAtOrInside(std::string_view path, std::string_view folder) {
  return path == folder || isInside(path, folder);
}

std::string_view withoutTrailingSlashes(std::string_view path) {
  while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
  return path;
}

std::string withoutRepeatedSlashes(std::string_view path) {
  std::string result;
  for (const char c : withoutTrailingSlashes(path)) {
    if (c != '/' || !result.ends_with('/')) result += c;
  }
  return std::string(withoutTrailingSlashes(result));
}

std::string_view lastComponent(std::string_view path) {
  path = withoutTrailingSlashes(path);
  if (path == "/") return path;
  const auto slash = path.rfind('/');
  return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view parentFolder(std::string_view path) {
  path = withoutTrailingSlashes(path);
  const auto slash = path.rfind('/');
  if (slash == std::string_view::npos) return {};
  return slash == 0 ? path.substr(0, 1) : withoutTrailingSlashes(path.substr(0, slash));
}

std::string below(std::string_view folder, std::string_view name) {
  std::string path(folder);
  if (path.empty() || path.back() != '/') path += '/';
  path += name;
  return path;
}

std::string_view extensionOf(std::string_view path) {
  const auto name = lastComponent(path);
  const auto dot = name.rfind('.');
  if (dot == std::string_view::npos || dot == 0) return {};
  return name.substr(dot + 1);
}

std::string_view stem(std::string_view path) {
  const auto name = lastComponent(path);
  const auto extension = extensionOf(path);
  return extension.empty() ? name : name.substr(0, name.size() - extension.size() - 1);
}

bool precedesInTree(std::string_view a, std::string_view b) {
  const auto rank = [](char c) { return c == '/' ? 0U : static_cast<unsigned char>(c); };
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                      [&](char x, char y) { return rank(x) < rank(y); });
}

std::string standardized(std::string_view path) {
  const bool absolute = path.starts_with('/');
  std::vector<std::string_view> kept;
  for (const auto piece : split(path, '/')) {
    if (piece == ".") continue;
    if (piece == ".." && !kept.empty() && kept.back() != "..") {
      kept.pop_back();
    } else if (piece != ".." || !absolute) {
      kept.push_back(piece);
    }
  }
  return (absolute ? "/" : "") + joined(kept, "/");
}

void PathSet::insert(std::string path) { paths_.insert(std::move(path)); }

bool PathSet::touches(std::string_view path) const {
  if (paths_.empty()) return false;
  for (std::string_view at = path;; at = parentFolder(at)) {
    if (paths_.contains(at)) return true;
    if (at.empty() || at == "/") break;
  }
  if (path == "/") return true;
  const auto inside = paths_.lower_bound(below(path, ""));
  return inside != paths_.end() && isInside(*inside, path);
}

}  // namespace volbrin
