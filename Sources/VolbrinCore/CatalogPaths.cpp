#include "CatalogPaths.hpp"

#include <fnmatch.h>

#include <algorithm>

#include "Files.hpp"
#include "Paths.hpp"
#include "Text.hpp"

namespace volbrin {
namespace {

bool matches(const std::string& pattern, const std::string& name) {
  return ::fnmatch(pattern.c_str(), name.c_str(), 0) == 0;
}

/// The names in `folder` that a component with a "*" stands for.
std::vector<std::string> matchingNames(const std::string& folder, const std::string& pattern) {
  std::vector<std::string> names;
  for (auto& name : listNames(folder)) {
    if (name.front() != '.' && matches(pattern, name)) names.push_back(std::move(name));
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

std::vector<std::string> expand(const std::string& pattern, const Mac& mac) {
  const std::string full = withoutRepeatedSlashes(mac.path(pattern));
  if (full.find('*') == std::string::npos) {
    return exists(full) ? std::vector{full} : std::vector<std::string>();
  }
  std::vector<std::string> current = {""};
  for (const auto piece : split(full, '/')) {
    const std::string name(piece);
    std::vector<std::string> next;
    for (const auto& base : current) {
      if (name.find('*') == std::string::npos) {
        if (exists(base + "/" + name)) next.push_back(base + "/" + name);
        continue;
      }
      for (const auto& match : matchingNames(base.empty() ? "/" : base, name)) {
        next.push_back(base + "/" + match);
      }
    }
    current = std::move(next);
  }
  return current;
}

bool contains(const std::string& path, const std::string& pattern) {
  const auto anyMatches = [&](const std::vector<std::string>& names) {
    return std::any_of(names.begin(), names.end(),
                       [&](const auto& name) { return matches(pattern, name); });
  };
  const auto names = listNames(path);
  if (anyMatches(names)) return true;
  return std::any_of(names.begin(), names.end(), [&](const auto& name) {
    const std::string inner = path + "/" + name;
    return isDirectory(inner) && anyMatches(listNames(inner));
  });
}

}  // namespace volbrin
