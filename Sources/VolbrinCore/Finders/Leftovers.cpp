#include "Leftovers.hpp"

#include <fmt/format.h>

#include <map>

#include "../Text.hpp"
#include "Shared.hpp"

namespace volbrin {
namespace {

using Kind = OwnerResolver::Kind;
using Form = OwnerResolver::Verdict::Form;

/// A folder whose owner isn't here.
struct Candidate {
  std::string path;
  std::string key;   ///< folders with the same key become one finding
  std::string name;  ///< what the finding calls it
  bool sure = false;
};

Candidate removedCandidate(const std::string& path, const std::optional<std::string>& app) {
  if (app) return {path, lowercased(*app), *app, true};
  constexpr std::string_view groupPrefix = "group.";
  auto base = lastComponent(path);
  if (lowercased(base).starts_with(groupPrefix)) base.remove_prefix(groupPrefix.size());
  return {path, lowercased(base), looksLikeBundleID(base) ? displayName(base) : std::string(base),
          true};
}

std::optional<Candidate> candidateAt(const std::string& path, Kind kind,
                                     const ScanContext& context) {
  if (!isPlainFolder(path) || context.isClaimed(path)) return std::nullopt;
  const auto name = lastComponent(path);
  const auto verdict = context.owners.resolve(name, kind);
  switch (verdict.form) {
    case Form::removed:
      return removedCandidate(path, verdict.name);
    case Form::unknown:
      return Candidate{path, path, std::string(name), false};
    case Form::installed:
    case Form::system:
      break;
  }
  return std::nullopt;
}

std::vector<Candidate> candidates(const ScanContext& context) {
  constexpr std::array<std::pair<const char*, Kind>, 3> places = {
      {{"~/Library/Containers", Kind::container},
       {"~/Library/Group Containers", Kind::groupContainer},
       {"~/Library/Application Support", Kind::supportFolder}}};
  std::vector<Candidate> found;
  for (const auto& [folder, kind] : places) {
    for (const auto& path : children(context.mac.path(folder))) {
      if (auto candidate = candidateAt(path, kind, context)) found.push_back(std::move(*candidate));
    }
  }
  return found;
}

/// What the finding says, for an owner that is surely gone and for one that nobody knows.
void fillIn(Finding& finding, const Candidate& first, const ScanContext& context) {
  const auto& name = first.name;
  if (first.sure) {
    finding.id = "leftover-" + normalized(first.key);
    finding.title = name + " leftovers";
    finding.reason = name + " is no longer installed, but its data stayed behind.";
    finding.getBack = fmt::format(
        "It stays in the Trash until you empty it. Reinstalled, {} would start fresh without it.",
        name);
    finding.owner = name;
    finding.action = actions::trash;
  } else {
    finding.id = "unknown-" + normalized(context.mac.display(first.path));
    finding.title = name + " (owner unknown)";
    finding.reason =
        "This folder doesn't match any installed app; it may be left over from something you "
        "removed.";
    finding.getBack = "Look inside before deciding; if it goes, it goes to the Trash first.";
    finding.action = actions::review;
    finding.unsure = true;
  }
}

std::optional<Finding> findingOf(const std::vector<Candidate>& group, const ScanContext& context) {
  Finding finding;
  for (const auto& candidate : group) {
    finding.bytes = addBytes(finding.bytes, context.survey.usage(candidate.path).bytes,
                             "the bytes of a leftover");
    finding.paths.push_back(candidate.path);
    if (finding.caution) continue;
    if (const auto own = context.survey.personalContent(candidate.path, personalContentLimit)) {
      finding.caution = fmt::format("Inside: {}. Check before removing.", *own);
    }
  }
  const auto& thresholds = context.catalog.thresholds;
  const ByteCount limit = group.front().sure ? thresholds.leftover : thresholds.unknownLeftover;
  if (finding.bytes < limitOr(limit, context)) return std::nullopt;
  finding.finder = "leftovers";
  finding.tier = Tier::reinstallable;
  fillIn(finding, group.front(), context);
  return finding;
}

}  // namespace

FinderResult LeftoversFinder::find(const ScanContext& context) const {
  const auto found = candidates(context);
  std::vector<std::string> paths;
  std::map<std::string, std::vector<Candidate>> groups;
  for (const auto& candidate : found) {
    paths.push_back(candidate.path);
    groups[candidate.key].push_back(candidate);
  }
  context.survey.learn(paths);

  FinderResult result;
  for (const auto& [key, group] : groups) {
    if (auto finding = findingOf(group, context)) result.findings.push_back(std::move(*finding));
  }
  return result;
}

}  // namespace volbrin
