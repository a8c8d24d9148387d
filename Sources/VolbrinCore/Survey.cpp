#include "Survey.hpp"

#include <algorithm>

#include "Changes.hpp"
#include "Files.hpp"
#include "Paths.hpp"

namespace volbrin {

void Survey::learn(const std::vector<std::string>& paths) const {
  std::vector<std::string> unknown;
  {
    const std::lock_guard guard(lock_);
    for (const auto& path : paths) {
      if (!path.empty() && !known_.contains(path)) unknown.push_back(path);
    }
  }
  std::sort(unknown.begin(), unknown.end());
  unknown.erase(std::unique(unknown.begin(), unknown.end()), unknown.end());
  if (unknown.empty()) return;
  auto facts = mac_.treeFactsOf(unknown, markers_, observer_);
  const std::lock_guard guard(lock_);
  for (std::size_t i = 0; i < unknown.size(); ++i) {
    known_.try_emplace(std::move(unknown[i]), std::move(facts[i]));
  }
}

TreeFacts Survey::factsOf(const std::string& path) const {
  learn({path});
  const std::lock_guard guard(lock_);
  const auto found = known_.find(path);
  return found == known_.end() ? TreeFacts{} : found->second;
}

Usage Survey::usage(const std::string& path) const { return factsOf(path).usage; }

std::map<std::string, Usage> Survey::usageOf(const std::vector<std::string>& paths) const {
  learn(paths);
  std::map<std::string, Usage> usages;
  for (const auto& path : paths) usages.try_emplace(path, factsOf(path).usage);
  return usages;
}

bool Survey::holdsCloudFolder(const std::string& path) const {
  return std::any_of(mac_.cloud().begin(), mac_.cloud().end(),
                     [&](const auto& folder) { return isAtOrInside(folder.path, path); });
}

std::optional<std::string> Survey::personalContent(const std::string& path,
                                                   std::int64_t limit) const {
  if (!holdsCloudFolder(path)) {
    const TreeFacts facts = factsOf(path);
    // Nothing of the user's anywhere is nothing among the first entries, too.
    if (facts.entries <= limit || facts.ownFiles.count == 0) return facts.ownFiles.text();
  }
  return volbrin::personalContent(path, markers_, limit);
}

bool Survey::changedRecently(const std::string& path, Date since, std::int64_t limit) const {
  if (holdsCloudFolder(path)) return volbrin::changedRecently(path, since, limit);
  const auto own = modified(path);
  if (own && *own > since) return true;
  if (!isDirectory(path)) return false;
  const TreeFacts facts = factsOf(path);
  return facts.entries > limit || (facts.newest && *facts.newest > since);
}

}  // namespace volbrin
