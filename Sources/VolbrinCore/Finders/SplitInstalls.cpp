#include "SplitInstalls.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "../ByteText.hpp"
#include "../Text.hpp"
#include "Shared.hpp"

namespace volbrin {
namespace {

using Form = OwnerResolver::Verdict::Form;
using Kind = OwnerResolver::Kind;

bool isOwnerOf(const Catalog::Owner& owner, const InstalledApp& app, const std::string& appName) {
  if (normalized(owner.app) == appName) return true;
  if (!app.bundleID || !owner.bundleIDs) return false;
  return std::any_of(owner.bundleIDs->begin(), owner.bundleIDs->end(),
                     [&](const auto& each) { return equalIgnoringCase(each, *app.bundleID); });
}

/// All that the app's folders may be called, `normalized`.
std::set<std::string> namesOf(const InstalledApp& app, const Catalog& catalog) {
  const std::string appName = normalized(app.name);
  std::set<std::string> names = {appName};
  if (app.bundleID) {
    names.insert(normalized(*app.bundleID));
    const std::string word = displayName(*app.bundleID);
    if (!isGenericBundleWord(word)) names.insert(normalized(word));
  }
  for (const auto& owner : catalog.owners) {
    if (!isOwnerOf(owner, app, appName)) continue;
    for (const auto& name : owner.names) names.insert(normalized(name));
  }
  names.erase("");  // of signs alone: it would fit every other such name
  return names;
}

/// The search through all apps of one scan.
class Search {
 public:
  explicit Search(const ScanContext& context)
      : context_(context), supportFolder_(context.mac.path("~/Library/Application Support")) {
    for (auto& path : children(supportFolder_)) {
      supportFolders_.emplace_back(normalized(lastComponent(path)), path);
    }
  }

  void lookAt(const InstalledApp& app) {
    if (app.onStartupDisk) return;
    const auto* drive = context_.driveOf(app.path);
    if (drive == nullptr || drive->isStartup) return;
    for (const auto& path : foldersOf(app)) {
      if (isSymlink(path) || context_.isClaimed(path) || !seen_.insert(path).second) continue;
      if (isOfAnotherApp(path, app)) continue;
      const ByteCount bytes = context_.survey.usage(path).bytes;
      if (bytes < limitOr(context_.catalog.thresholds.splitInstall, context_)) continue;
      result.findings.push_back(findingOf(app, *drive, path, bytes));
    }
  }

  FinderResult result;

 private:
  [[nodiscard]] std::vector<std::string> foldersOf(const InstalledApp& app) const {
    const auto names = namesOf(app, context_.catalog);
    std::vector<std::string> folders;
    for (const auto& [name, path] : supportFolders_) {
      if (names.contains(name)) folders.push_back(path);
    }
    if (!app.bundleID || !isFileName(*app.bundleID)) return folders;
    for (const char* place : {"~/Library/Containers", "~/Library/Caches"}) {
      auto path = below(context_.mac.path(place), *app.bundleID);
      if (isDirectory(path)) folders.push_back(std::move(path));
    }
    return folders;
  }

  /// Whether a support folder of that name belongs to another app, which is here.
  [[nodiscard]] bool isOfAnotherApp(const std::string& path, const InstalledApp& app) const {
    if (!isInside(path, supportFolder_)) return false;
    const auto verdict = context_.owners.resolve(lastComponent(path), Kind::supportFolder);
    return verdict.form == Form::installed &&
           normalized(verdict.name.value_or("")) != normalized(app.name);
  }

  [[nodiscard]] Finding findingOf(const InstalledApp& app, const DriveInfo& drive,
                                  const std::string& path, ByteCount bytes) const {
    Finding finding;
    finding.id = fmt::format("split-{}-{}", normalized(app.name), normalized(lastComponent(path)));
    finding.finder = "split-installs";
    finding.title = app.name + " data on your Mac";
    finding.reason = fmt::format("{} is installed on {}, but {} of its data is on your Mac.",
                                 app.name, drive.name, byteText(bytes));
    finding.getBack = fmt::format(
        "Look inside first: it may hold settings or downloads {} needs. Some apps let you point "
        "this folder at {} instead.",
        app.name, drive.name);
    finding.tier = Tier::reinstallable;
    finding.bytes = bytes;
    finding.paths = {path};
    finding.owner = app.name;
    finding.action = actions::review;
    if (const auto own = context_.survey.personalContent(path, personalContentLimit)) {
      finding.caution = fmt::format("Inside: {}.", *own);
    }
    if (app.bundleID) finding.blockedBy = blockedWhileOpen(context_.openApp({*app.bundleID}));
    return finding;
  }

  const ScanContext& context_;
  std::string supportFolder_;
  std::vector<std::pair<std::string, std::string>> supportFolders_;  ///< `normalized` name, path
  std::set<std::string> seen_;  ///< of all apps: a folder is reported for the first
};

}  // namespace

FinderResult SplitInstallsFinder::find(const ScanContext& context) const {
  Search search(context);
  for (const auto& app : context.apps.apps()) search.lookAt(app);
  return std::move(search.result);
}

}  // namespace volbrin
