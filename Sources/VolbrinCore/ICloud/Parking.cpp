#include <exception>
#include <stdexcept>

#include "../Acting/Target.hpp"
#include "../Acting/TreeSnapshot.hpp"
#include "../FileDigest.hpp"
#include "../Files.hpp"
#include "../PathGuard.hpp"
#include "../Paths.hpp"
#include "CloudNames.hpp"
#include "CloudRun.hpp"

namespace volbrin {
namespace {

/// A path in iCloud Drive without its root, below a folder that tells which root it was.
std::string relativeName(const std::string& path, const CloudRun& run) {
  for (const auto& root : run.roots) {
    if (!isInside(path, root)) continue;
    const auto name = std::string(lastComponent(root));
    return (name == "com~apple~CloudDocs" ? "iCloud Drive" : name) + path.substr(root.size());
  }
  return std::string(lastComponent(path));
}

/// Whether the copy that stays can be read without bringing it down first.
bool isKeeperAtHand(const CloudItem& item, const CloudRun& run) {
  return item.keepOnMac.value_or(true) || run.mac.isFake();
}

/// The keeper's digest, worked out once a run; empty when it can't be read to compare.
const std::string& keeperHash(const CloudItem& item, CloudRun& run) {
  const auto& keeper = *item.keep;
  const auto [entry, isNew] = run.keeperHashes.try_emplace(keeper);
  auto& hash = entry->second;
  if (!isNew || !exists(keeper)) return hash;
  if (isKeeperAtHand(item, run)) {
    hash = sha256Of(keeper).value_or("");
    return hash;
  }
  const auto room = run.freeBytes() - run.options.marginBytes;
  if (sizeOf(keeper).value_or(0) > room) return hash;
  run.progress("Downloading the copy that stays, to compare");
  if (download({keeper}, run).contains(keeper)) hash = sha256Of(keeper).value_or("");
  run.mac.platform().evict(keeper);
  return hash;
}

bool isSameItem(const std::string& a, const std::string& b) {
  const auto realA = resolved(a), realB = resolved(b);
  if (!realA || !realB) return false;
  const auto statA = statPath(*realA), statB = statPath(*realB);
  return statA && statB && statA->device == statB->device && statA->inode == statB->inode;
}

/// One file on its way out of iCloud Drive.
class Parking {
 public:
  Parking(const CloudItem& item, CloudRun& run)
      : item_(item), run_(run), path_(item.path), name_(lastComponent(item.path)) {}

  Outcome go() {
    if (auto why = changedSinceScan()) return refused(std::move(*why));
    const bool isHere = item_.onMac || run_.arrived.contains(path_);
    if (!isHere || !run_.mac.platform().isCurrent(path_)) {
      return stays(
          failed("It didn't finish downloading, so nothing was changed; it's still in "
                 "iCloud."));
    }
    run_.progress("Checking " + name_);
    // From before it is read: what changes later isn't what was proved.
    const TreeSnapshot snapshot(path_);
    const auto hash = sourceHash();
    if (!hash) return stays(failed("It couldn't be read, so nothing was changed."));
    if (item_.keep) {
      if (auto fault = compareToKeeper(*hash)) return stays(std::move(*fault));
    }
    const auto target = parkedPath(path_, run_);
    if (auto fault = copyAndProve(target, *hash)) return stays(std::move(*fault));
    return giveUp(snapshot, target);
  }

  /// The outcome of a file that stays in iCloud.
  Outcome stays(Outcome outcome) {
    run_.giveBack(path_);
    return outcome;
  }

 private:
  [[nodiscard]] std::optional<std::string> changedSinceScan() const {
    const bool isBelowRoot = std::any_of(run_.roots.begin(), run_.roots.end(),
                                         [&](const auto& root) { return isInside(path_, root); });
    if (isSymlink(path_) || !isBelowRoot || PathGuard::throughLink(path_)) {
      return "It isn't in iCloud Drive any more; scan again.";
    }
    if (sizeOf(path_) != item_.bytes) return "It changed or moved since the scan; scan again.";
    return std::nullopt;
  }

  /// The file's digest. The keeper's is worked out with it, at the same time, if it will be wanted
  /// and isn't known.
  [[nodiscard]] std::optional<std::string> sourceHash() {
    const auto& keeper = item_.keep;
    const bool wantsBoth = keeper && !run_.keeperHashes.contains(*keeper) && exists(*keeper) &&
                           isKeeperAtHand(item_, run_);
    if (!wantsBoth) return sha256Of(path_);
    auto hashes = sha256OfEach({path_, *keeper});
    run_.keeperHashes.emplace(*keeper, hashes[1].value_or(""));
    return std::move(hashes[0]);
  }

  std::optional<Outcome> compareToKeeper(const std::string& hash) {
    const auto& keeper = keeperHash(item_, run_);
    const auto shown = ICloud::display(*item_.keep, run_.mac);
    if (keeper.empty() || isSameItem(path_, *item_.keep)) {
      return failed("The copy that stays (" + shown +
                    ") couldn't be read to compare, so nothing was changed.");
    }
    if (keeper == hash) return std::nullopt;
    return refused("It isn't identical to " + shown + " byte for byte, so it stays in iCloud.");
  }

  std::optional<Outcome> copyAndProve(const std::string& target, const std::string& hash) {
    const auto& drive = run_.drive.name;
    run_.progress("Copying " + name_ + " to " + drive);
    try {
      prepareTarget(target);
    } catch (const std::exception& error) {
      return failed("Couldn't make the folder on " + drive + ": " + wordsOf(error));
    }
    const auto fault = run_.mac.platform().copyTree(path_, target, nullptr);
    if (fault && !fault->hasStarted) {
      return failed("Couldn't copy it to " + drive + ": " + fault->what);
    }
    if (!fault && sha256Of(target, ReadFrom::drive) == hash) return std::nullopt;
    return failed("The copy on " + drive + " doesn't match, so " + name_ +
                  " stays in iCloud; the partial copy is at " + run_.mac.display(target) + ".");
  }

  Outcome giveUp(const TreeSnapshot& snapshot, const std::string& target) {
    std::vector<Relocation> relocated = {{path_, target, {}, true}};
    const auto& drive = run_.drive.name;
    std::string why = "it changed meanwhile";
    try {
      if (!exists(target)) throw std::runtime_error("the drive went away");
      if (snapshot.removeUnchanged()) {
        return done(std::string("Checked byte for byte") +
                        (item_.keep ? " against the copy that stays" : "") + ", parked on " +
                        drive + " and removed from iCloud.",
                    std::move(relocated));
      }
    } catch (const std::exception& error) {
      why = wordsOf(error);
    }
    return failed(
        "Parked on " + drive + " and checked, but it couldn't be removed from iCloud: " + why,
        std::move(relocated));
  }

  const CloudItem& item_;
  CloudRun& run_;
  const std::string& path_;
  const std::string name_;
};

}  // namespace

std::string parkedPath(const std::string& path, const CloudRun& run) {
  const auto first =
      below(below(run.drive.path, std::string(parkingFolder)), relativeName(path, run));
  const std::string extension(extensionOf(first));
  const auto ending = extension.empty() ? "" : "." + extension;
  std::string candidate = first;
  for (int number = 2; isTaken(candidate); ++number) {
    candidate =
        first.substr(0, first.size() - ending.size()) + " " + std::to_string(number) + ending;
  }
  return candidate;
}

Outcome park(const CloudItem& item, CloudRun& run) {
  Parking parking(item, run);
  try {
    return parking.go();
  } catch (const std::exception&) {
    // Whatever removes something answers by itself; this came before.
    return parking.stays(failed("It couldn't be read, so nothing was changed."));
  }
}

}  // namespace volbrin
