#include "PathGuard.hpp"

#include <algorithm>

#include "Files.hpp"
#include "Paths.hpp"
#include "Text.hpp"

namespace volbrin {

PathGuard::PathGuard(const Catalog& catalog, const Mac& mac,
                     const std::vector<ProtectedPath>& extra) {
  const auto add = [&](const auto& rule) {
    rules_.push_back({withoutRepeatedSlashes(mac.path(rule.path)), rule.why});
  };
  for (const auto& rule : catalog.protectedPaths) add(rule);
  for (const auto& folder : mac.cloud()) rules_.push_back({folder.path, folder.name});
  for (const auto& rule : extra) add(rule);
  for (const auto& ending : catalog.protectedSuffixes)
    suffixes_.push_back({ending.path, ending.why});
}

std::optional<std::string> PathGuard::protection(std::string_view path, Contents contents) const {
  for (const auto& rule : rules_) {
    const bool holdsRule = contents == Contents::include && isInside(rule.path, path);
    if (isAtOrInside(path, rule.path) || holdsRule) return rule.why;
  }
  const auto pieces = split(path, '/');
  for (const auto& [suffix, why] : suffixes_) {
    const bool ends = std::any_of(pieces.begin(), pieces.end(), [&ending = suffix](auto piece) {
      return piece.ends_with(ending);
    });
    if (ends) return why;
  }
  return std::nullopt;
}

bool PathGuard::throughLink(const std::string& path) {
  const auto real = resolved(path);
  return real && *real != path;
}

std::vector<std::string> PathGuard::protectedInside(std::string_view path) const {
  std::vector<std::string> words;
  for (const auto& rule : rules_) {
    const bool isNew = std::find(words.begin(), words.end(), rule.why) == words.end();
    if (isNew && isInside(rule.path, path)) words.push_back(rule.why);
  }
  return words;
}

}  // namespace volbrin
