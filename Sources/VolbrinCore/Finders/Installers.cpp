#include "Installers.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "../DateText.hpp"
#include "../Text.hpp"
#include "Shared.hpp"

namespace volbrin {
namespace {

/// Shorter names of apps begin too many file names.
constexpr std::size_t shortestAppName = 5;

const InstalledApp* appOf(const std::string& installer, const AppIndex& apps) {
  const std::string base = normalized(stem(installer));
  const auto found = std::find_if(apps.apps().begin(), apps.apps().end(), [&](const auto& app) {
    const std::string name = normalized(app.name);
    return characterCount(name) >= shortestAppName && base.starts_with(name);
  });
  return found == apps.apps().end() ? nullptr : &*found;
}

bool isInstallerName(const std::string& extension) {
  return extension == "dmg" || extension == "pkg" || extension == "xip" || extension == "zip";
}

}  // namespace

FinderResult InstallersFinder::find(const ScanContext& context) const {
  const auto& thresholds = context.catalog.thresholds;
  const Date cutoff = context.options.now - std::chrono::days(thresholds.installerDays);
  FinderResult result;
  for (const auto& path : children(context.mac.path("~/Downloads"))) {
    const std::string extension = lowercased(extensionOf(path));
    if (!isInstallerName(extension) || isDirectory(path)) continue;
    const auto date = modified(path);
    if (!date || *date >= cutoff) continue;
    const auto* app = appOf(path, context.apps);
    if (extension == "zip" && app == nullptr) continue;
    const ByteCount bytes = context.survey.usage(path).bytes;
    if (bytes < limitOr(thresholds.installerBytes, context)) continue;

    const auto name = lastComponent(path);
    Finding finding;
    finding.id = "installer-" + normalized(name);
    finding.finder = "installers";
    finding.title = name;
    finding.reason =
        fmt::format("An installer you downloaded on {}{}.", dateText(*date, "d MMMM yyyy"),
                    app == nullptr ? "" : "; " + app->name + " is already installed");
    finding.getBack = "Download it again from its maker if you ever need it.";
    finding.tier = Tier::reinstallable;
    finding.bytes = bytes;
    finding.paths = {path};
    finding.action = actions::trash;
    result.findings.push_back(std::move(finding));
  }
  return result;
}

}  // namespace volbrin
