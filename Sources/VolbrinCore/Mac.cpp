#include "Mac.hpp"

#include <algorithm>
#include <array>

#include "Files.hpp"
#include "MachinePaths.hpp"
#include "Paths.hpp"
#include "Platform/FixturePlatform.hpp"
#include "Platform/ThisMachine.hpp"

namespace volbrin {
namespace {

constexpr const char* productName = "a measured size times the scale";

}  // namespace

/// Tells an observer of a fake machine's sizes as the machine itself does.
class Mac::ScaledObserver final : public MeasureObserver {
 public:
  ScaledObserver(MeasureObserver& inner, double scale) : inner_(inner), scale_(scale) {}
  void measured(ByteCount bytes) override {
    inner_.measured(scaledBytes(bytes, scale_, productName));
  }

 private:
  MeasureObserver& inner_;
  double scale_;
};

Mac Mac::real() {
  const std::string home = homeOfThisUser();
  return Mac("", resolved(home).value_or(home), platformOfThisMachine());
}

Mac Mac::fake(const std::string& folder) {
  const std::string root = resolved(folder).value_or(folder);
  const std::string file = below(root, Fixture::fileName);
  auto fixture = fromJson<Fixture>(parseJson(readFile(file), file), file);
  const std::string home = root + "/Users/me";
  auto platform = std::make_shared<FixturePlatform>(root, home, fixture);
  return Mac(root, home, std::move(platform), std::move(fixture));
}

Mac::Mac(std::string root, std::string home, std::shared_ptr<const Platform> platform,
         std::optional<Fixture> fixture)
    : root_(std::move(root)),
      home_(std::move(home)),
      platform_(std::move(platform)),
      fixture_(std::move(fixture)),
      cloud_(findCloudFolders()) {}

std::vector<CloudFolder> Mac::findCloudFolders() const {
  std::vector<CloudFolder> folders = {{home_ + "/Library/Mobile Documents", "iCloud Drive"},
                                      {home_ + "/Library/CloudStorage", "a cloud drive"}};
  for (const char* name : {"Desktop", "Documents", "Downloads", "Movies", "Music", "Pictures"}) {
    const std::string folder = below(home_, name);
    if (auto provider = fileProviderOf(folder)) folders.push_back({folder, *provider});
  }
  if (!fixture_ || !fixture_->cloud) return folders;
  std::set<std::string> known;
  for (const auto& folder : folders) known.insert(folder.path);
  for (const auto& written : *fixture_->cloud) {
    const std::string folder = path(written);
    if (known.insert(folder).second) folders.push_back({folder, "iCloud Drive"});
  }
  return folders;
}

std::string Mac::path(std::string_view written) const {
  return absolutePath(written, root_, home_);
}

std::string Mac::display(std::string_view path) const { return displayedPath(path, root_, home_); }

std::optional<CloudFolder> Mac::cloudFolderOf(std::string_view path) const {
  const auto found = std::find_if(cloud_.begin(), cloud_.end(), [&](const auto& folder) {
    return isAtOrInside(path, folder.path);
  });
  return found == cloud_.end() ? std::nullopt : std::optional(*found);
}

std::unordered_set<std::string> Mac::cloudPaths() const {
  std::unordered_set<std::string> paths;
  for (const auto& folder : cloud_) paths.insert(folder.path);
  return paths;
}

Usage Mac::scaled(Usage usage) const {
  if (fixture_ && fixture_->scale) {
    usage.bytes = scaledBytes(usage.bytes, *fixture_->scale, productName);
  }
  return usage;
}

MeasureObserver* Mac::scaled(MeasureObserver* observer, std::optional<ScaledObserver>& own) const {
  if (observer == nullptr || !fixture_ || !fixture_->scale) return observer;
  return &own.emplace(*observer, *fixture_->scale);
}

Usage Mac::usage(const std::string& path, MeasureObserver* observer) const {
  return usageOf({path}, observer).at(path);
}

std::map<std::string, Usage> Mac::usageOf(const std::vector<std::string>& paths,
                                          MeasureObserver* observer) const {
  std::optional<ScaledObserver> own;
  auto usages = diskUsageOf(paths, cloudPaths(), scaled(observer, own));
  for (auto& [path, usage] : usages) usage = scaled(usage);
  return usages;
}

std::vector<TreeFacts> Mac::treeFactsOf(const std::vector<std::string>& paths,
                                        const FileMarkers& markers,
                                        MeasureObserver* observer) const {
  std::optional<ScaledObserver> own;
  auto facts = volbrin::treeFactsOf(paths, cloudPaths(), markers, scaled(observer, own));
  for (auto& each : facts) each.usage = scaled(each.usage);
  return facts;
}

ByteCount Mac::trashBytes() const { return usage(platform_->trashFolder()).bytes; }

ScanReport statusOf(const Mac& mac) {
  ScanReport report;
  report.scannedAt = presentDate();
  report.drives = mac.drives();
  report.trashBytes = mac.trashBytes();
  return report;
}

}  // namespace volbrin
