#include "StaleMounts.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "../DirectoryReader.hpp"
#include "../Text.hpp"
#include "Shared.hpp"

namespace volbrin {
namespace {

/// Whether the folder is on the file system of the one above it, so that nothing is mounted there.
bool isOnSameFileSystem(const std::string& path, const std::string& folder) {
  const auto own = statPath(path);
  const auto above = statPath(folder);
  return own && above && own->device == above->device;
}

}  // namespace

FinderResult StaleMountsFinder::find(const ScanContext& context) const {
  const auto volumes = context.mac.path("/Volumes");
  const auto isDrive = [&](const std::string& path) {
    return std::any_of(context.drives.begin(), context.drives.end(),
                       [&](const auto& drive) { return drive.path == path; });
  };
  FinderResult result;
  for (const auto& path : children(volumes)) {
    if (!isPlainFolder(path) || isDrive(path)) continue;
    if (!context.mac.isFake() && !isOnSameFileSystem(path, volumes)) continue;
    const ByteCount bytes = context.survey.usage(path).bytes;
    if (bytes < limitOr(context.catalog.thresholds.staleMount, context)) continue;

    const auto name = lastComponent(path);
    Finding finding;
    finding.id = "stale-volume-" + normalized(name);
    finding.finder = "stale-mounts";
    finding.title = fmt::format("\"{}\" folder that isn't the drive", name);
    finding.reason = fmt::format(
        "Something saved files into /Volumes/{0} while {0} wasn't plugged in, so they're on your "
        "Mac, not on the drive.",
        name);
    finding.getBack =
        "Plug the drive in and move what you want to keep onto it; nothing here is removed for "
        "you.";
    finding.tier = Tier::personal;
    finding.bytes = bytes;
    finding.paths = {path};
    finding.action = actions::review;
    result.findings.push_back(std::move(finding));
  }
  return result;
}

}  // namespace volbrin
