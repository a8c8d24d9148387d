#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <exception>
#include <set>

#include "../Files.hpp"
#include "../Paths.hpp"
#include "Actions.hpp"
#include "MoveParts.hpp"
#include "Target.hpp"

namespace volbrin {
namespace {

constexpr const char* folderOnDrive = "Sound Libraries";

/// One path of a link move.
struct Part {
  std::string path;    ///< links in the folders above it resolved: where it really is
  std::string target;  ///< where it goes
};

/// The finding's paths that haven't been moved yet. What lies in another of them goes with it, or
/// went: behind that one's link lies the copy on the drive.
std::vector<std::string> pathsToMove(const Finding& finding) {
  const auto& all = finding.paths;
  std::vector<std::string> paths;
  for (const auto& path : all) {
    const bool isIncluded = std::any_of(
        all.begin(), all.end(), [&](const std::string& other) { return isInside(path, other); });
    if (exists(path) && !isSymlink(path) && !isIncluded) paths.push_back(path);
  }
  return paths;
}

/// The user's Trash, and in it the first free name for `path`; a number goes behind any extension.
std::string freeTrashPath(const std::string& path, const Mac& mac) {
  const auto first = below(mac.path("~/.Trash"), lastComponent(path));
  std::string candidate = first;
  for (int number = 2; isTaken(candidate); ++number) {
    candidate = first + " " + std::to_string(number);
  }
  return candidate;
}

/// Moves the path to the Trash; where the system protects it the user is asked for the password.
/// Where it is then; absent when it is still in place.
std::optional<std::string> trashOrAsk(const std::string& path, const Mac& mac) {
  try {
    return mac.trash(path);
  } catch (const std::exception&) {
    if (mac.isFake()) return std::nullopt;
  }
  auto candidate = freeTrashPath(path, mac);
  if (!mac.runAsAdmin({{"/bin/mv", path, candidate}})) return std::nullopt;
  return candidate;
}

/// Makes a symbolic link at `at` that holds `to`; where the system protects the folder the user is
/// asked for the password. Whether it stands.
bool linkOrAsk(const std::string& at, const std::string& to, const Mac& mac) {
  try {
    const HeldItem item = holdItem(at);
    if (::symlinkat(to.c_str(), item.folder.get(), item.name.c_str()) == 0) return true;
  } catch (const std::exception&) {
    // Asking may still help.
  }
  // Where a folder stands, ln would put the link into it.
  if (mac.isFake() || isTaken(at)) return false;
  return mac.runAsAdmin({{"/bin/ln", "-s", to, at}});
}

class LinkMove {
 public:
  LinkMove(const Finding& finding, const DriveInfo& drive, const ActScene& scene)
      : scene_(scene),
        paths_(pathsToMove(finding)),
        base_(below(below(drive.path, folderOnDrive), finding.owner.value_or(finding.title))),
        users_(finding.owner.value_or("its apps")),
        drive_(drive.name) {}

  Outcome run() {
    if (paths_.empty()) return refused("Nothing left to move; scan again.");
    if (auto refusal = findTargets()) return *refusal;
    if (scene_.options.dryRun) return wouldDo(plan());
    try {
      prepareTarget(parts_.front().target);
    } catch (const std::exception& error) {
      return failed("Couldn't make " + shown(base_) + ": " + wordsOf(error));
    }
    for (const auto& part : parts_) {
      try {
        if (auto fault = move(part)) return *fault;
      } catch (const std::exception& error) {
        return end("Couldn't copy " + shown(part.path) + ": " + wordsOf(error));
      }
    }
    return done("Moved to " + shown(base_) +
                    " and checked file by file, with a link where each was, so " + users_ +
                    " find them while " + drive_ +
                    " is plugged in. The originals are in the Trash.",
                relocated_);
  }

 private:
  [[nodiscard]] std::string shown(const std::string& path) const {
    return scene_.mac.display(path);
  }

  std::optional<Outcome> findTargets() {
    std::set<std::string> taken;
    for (const auto& path : paths_) {
      const auto target = below(base_, lastComponent(path));
      if (isTaken(target) || !taken.insert(target).second) return alreadyExists(target, scene_);
      const auto real = resolved(path).value_or(path);
      if (isAtOrInside(target, real)) return noDriveSaid();
      parts_.push_back({real, target});
    }
    return std::nullopt;
  }

  [[nodiscard]] std::string plan() const {
    const auto what = paths_.size() == 1 ? "it" : fmt::format("each of the {}", paths_.size());
    return "Would copy " + what + " to " + shown(base_) +
           ", check every file, put the original in the Trash and leave a link in its place, so " +
           users_ + " keep finding the sounds while " + drive_ + " is plugged in.";
  }

  /// All steps for one path; absent when they went through.
  std::optional<Outcome> move(const Part& part) {
    const auto fault = copyTo(part.path, part.target, scene_);
    if (fault && !fault->hasStarted) {
      return end("Couldn't copy " + shown(part.path) + ": " + fault->what);
    }
    if (fault || !isProved(part.path, part.target, scene_)) {
      return end("The copy of " + shown(part.path) +
                 " doesn't match the original; it's untouched, and the partial copy is at " +
                 shown(part.target) + ".");
    }
    relocated_.push_back({part.path, part.target, {}, {}});
    const auto inTrash = trashOrAsk(part.path, scene_.mac);
    if (!inTrash) {
      return end("Copied and checked, but " + shown(part.path) +
                 " couldn't go to the Trash (the password was refused?); it's still in place.");
    }
    relocated_.push_back({part.path, *inTrash, {}, {}});
    if (!linkOrAsk(part.path, part.target, scene_.mac)) {
      return end("Moved, but the link at " + shown(part.path) +
                 " couldn't be made; undo puts the original back.");
    }
    relocated_.push_back({part.path, part.target, true, {}});
    return std::nullopt;
  }

  [[nodiscard]] Outcome end(std::string why) const { return failed(std::move(why), relocated_); }

  const ActScene& scene_;
  std::vector<std::string> paths_;
  std::string base_;   ///< the folder on the drive that all go to
  std::string users_;  ///< who keeps finding them
  std::string drive_;
  std::vector<Part> parts_;
  std::vector<Relocation> relocated_;
};

}  // namespace

Outcome moveWithLinks(const Finding& finding, const ActScene& scene) {
  const auto chosen = chooseDrive(finding, scene);
  if (chosen.drive == nullptr) return chosen.refusal;
  return LinkMove(finding, *chosen.drive, scene).run();
}

}  // namespace volbrin
