#include "Ladder.hpp"

#include "../Files.hpp"
#include "../Paths.hpp"
#include "../TreeWalk.hpp"

namespace volbrin {
namespace {

using Kind = Action::Kind;

constexpr std::size_t mostSearched = 200'000;

class GuardVisitor final : public TreeVisitor {
 public:
  explicit GuardVisitor(const PathGuard& guard) : guard_(guard) {}

  Onward visit(const WalkEntry& entry) override {
    if (entry.folder == nullptr) return Onward::into;
    if (seen_++ == mostSearched) return Onward::end;
    // Moved to the Trash with its folder, it would be emptied with the Trash.
    if (entry.isMountPoint) found = "a mounted drive";
    if (!found) {
      const auto path = below(entry.folder->path(), entry.name);
      found = guard_.protection(path, PathGuard::Contents::include);
    }
    return found ? Onward::end : Onward::into;
  }
  void unreadable(std::size_t /*root*/, const EntryStat* /*closed*/) override {}

  std::optional<std::string> found;

 private:
  const PathGuard& guard_;
  std::size_t seen_ = 0;
};

std::string handOffWords(const Action& action) {
  return "Only " + action.app.value_or("its own app") +
         " can do this: " + action.steps.value_or("") + ".";
}

/// Whether the action gets at what is in the finding's paths.
bool touchesContents(Kind kind) {
  return kind == Kind::trash || kind == Kind::remove || kind == Kind::move;
}

std::optional<std::string> refusalOfPath(const std::string& path, Kind kind,
                                         const ActScene& scene) {
  if (const auto why = scene.guard.protection(path, PathGuard::Contents::include)) {
    return reachesProtected(*why);
  }
  if (PathGuard::throughLink(path)) {
    return "It's reached through a link, so acting on it could land somewhere else.";
  }
  if (!exists(path)) return scene.mac.display(path) + " isn't there any more; scan again.";
  if (!touchesContents(kind)) return std::nullopt;
  if (const auto why = protectedInside(path, scene.guard)) {
    return holdsProtected(*why);
  }
  return std::nullopt;
}

}  // namespace

Detour detourOf(const Finding& finding, const CleanOptions& options) {
  if (finding.tier == Tier::personal && finding.duplicateOf) return Detour::removeCopy;
  const bool isLinkable = finding.action.linkable.value_or(false) && options.linkMove;
  return finding.action.kind == Kind::handOff && isLinkable ? Detour::moveWithLinks : Detour::none;
}

std::optional<std::string> refusalBeforeDetour(const Finding& finding) {
  if (finding.unsure) return "Its owner isn't known for sure; look into it first.";
  return finding.blockedBy;
}

std::optional<std::string> refusal(const Finding& finding, const ActScene& scene) {
  const Kind kind = finding.action.kind;
  if (kind == Kind::handOff) return handOffWords(finding.action);
  if (kind == Kind::review) return "This one is for you to decide; Volbrin doesn't act on it.";
  if (finding.tier == Tier::personal && kind != Kind::move) {
    return "Your own files are never removed, only moved.";
  }
  if (kind == Kind::remove && finding.tier != Tier::rebuilds) {
    return "Only caches that rebuild themselves are ever deleted.";
  }
  if (auto caution = waitingCaution(finding, scene.options)) return caution;
  for (const auto& path : finding.paths) {
    if (auto why = refusalOfPath(path, kind, scene)) return why;
  }
  return std::nullopt;
}

std::optional<std::string> protectedInside(const std::string& path, const PathGuard& guard) {
  if (!isDirectory(path)) return std::nullopt;
  GuardVisitor visitor(guard);
  walkTrees({path}, {.order = WalkOptions::Order::byName},
            [&]() -> TreeVisitor& { return visitor; });
  return visitor.found;
}

}  // namespace volbrin
