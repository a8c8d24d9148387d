#include "CatalogCheck.hpp"

#include <fmt/format.h>
#include <algorithm>
#include <map>
#include <set>

#include "PatternOverlap.hpp"
#include "Text.hpp"

namespace volbrin {
namespace {

using fmt::format;
/// Whether an id can stand in a command line and a history as one word.
bool isOneWord(std::string_view id) {
  return !id.empty() && std::none_of(id.begin(), id.end(), [](char c) {
    return static_cast<unsigned char>(c) <= ' ' || c == 0x7F;
  });
}

bool isLowerCase(const std::string& text) { return lowercased(text) == text; }

/// Collects problems in one catalog; each `check...` looks at one list of it.
class CatalogChecker {
 public:
  explicit CatalogChecker(const Catalog& catalog) : catalog_(catalog) {}

  std::vector<JsonProblem> run() {
    checkProtected();
    for (std::size_t i = 0; i < catalog_.places.size(); ++i) {
      checkPlace(catalog_.places[i], format("places[{}]", i));
    }
    checkReach();
    checkOwners();
    checkWords(catalog_.pluginVendors, "pluginVendors");
    checkWords(catalog_.systemNames, "systemNames");
    checkWords(catalog_.systemPrefixes, "systemPrefixes");
    checkMarkers(catalog_.personalMarkers.folders, "personalMarkers.folders");
    checkMarkers(catalog_.personalMarkers.extensions, "personalMarkers.extensions");
    checkLibraries();
    checkThresholds();
    return std::move(problems_);
  }

 private:
  void report(std::string path, std::string problem) {
    problems_.push_back({std::move(path), std::move(problem)});
  }

  void require(bool holds, const std::string& path, const char* problem) {
    if (!holds) report(path, problem);
  }

  void requireText(const std::string& text, const std::string& path) {
    require(!trimmed(text).empty(), path, "is empty");
  }

  void checkProtected() {
    for (std::size_t i = 0; i < catalog_.protectedPaths.size(); ++i) {
      const auto& [path, why] = catalog_.protectedPaths[i];
      const auto at = format("protected[{}]", i);
      checkWrittenPath(path, at + ".path");
      require(!hasStar(path), at + ".path",
              "a protected path is no pattern: \"*\" matches nothing");
      requireText(why, at + ".why");
    }
    for (std::size_t i = 0; i < catalog_.protectedSuffixes.size(); ++i) {
      const auto& [suffix, why] = catalog_.protectedSuffixes[i];
      const auto at = format("protectedSuffixes[{}]", i);
      requireText(suffix, at + ".path");
      require(suffix.find('/') == std::string::npos, at + ".path",
              "an ending belongs to one component and has no \"/\"");
      require(!hasStar(suffix), at + ".path", "an ending is no pattern: \"*\" matches nothing");
      requireText(why, at + ".why");
    }
  }

  void checkWrittenPath(const std::string& path, const std::string& at) {
    if (!path.starts_with("~/") && !path.starts_with('/')) {
      report(at, "must begin with \"~/\" or \"/\"");
      return;
    }
    for (const auto piece :
         split(std::string_view(path).substr(path.find('/') + 1), '/', EmptyPieces::keep)) {
      require(!piece.empty(), at, "has an empty component");
      require(piece != "." && piece != "..", at, "has a \".\" or \"..\" in it");
      require(piece.find("**") == std::string_view::npos, at,
              "\"*\" works within one component; \"**\" says nothing more");
    }
  }

  void checkPlace(const Catalog::Place& place, const std::string& at) {
    require(isOneWord(place.id), at + ".id", "must be one word without blanks");
    require(ids_.insert(place.id).second, at + ".id", "is not unique");
    requireText(place.title, at + ".title");
    requireText(place.reason, at + ".reason");
    requireText(place.getBack, at + ".getBack");
    require(!place.paths.empty(), at + ".paths", "is empty: the place can never be found");
    for (std::size_t i = 0; i < place.paths.size(); ++i) {
      checkPattern(place.paths[i], format("{}.paths[{}]", at, i));
    }
    checkAction(place.action, place.tier, at + ".action");
    if (place.actionIfToolMissing) {
      checkAction(*place.actionIfToolMissing, place.tier, at + ".actionIfToolMissing");
      require(place.tool.has_value(), at + ".actionIfToolMissing", "has no \"tool\" to miss");
    }
    require(place.app || !place.reasonIfUninstalled, at + ".reasonIfUninstalled",
            "has no \"app\" that could be uninstalled");
    require(place.app || !place.onlyIfUninstalled, at + ".onlyIfUninstalled",
            "has no \"app\" that could be uninstalled");
    require(!place.minBytes || *place.minBytes >= 0, at + ".minBytes", "is negative");
    if (place.marker) {
      requireText(*place.marker, at + ".marker");
      require(place.marker->find('/') == std::string::npos, at + ".marker",
              "is a name: with a \"/\" in it, it matches none");
    }
    checkWords(place.ownerBundleIDs.value_or(std::vector<std::string>()), at + ".ownerBundleIDs");
  }

  void checkPattern(const std::string& pattern, const std::string& at) {
    checkWrittenPath(pattern, at);
    const auto components = patternComponents(pattern);
    const bool isAll = !components.empty() &&
                       std::all_of(components.begin(), components.end(),
                                   [](const auto& part) { return part == "*" || part == "~"; });
    require(!isAll, at, "matches whole homes or drives");
    const bool hidesStar = std::any_of(components.begin(), components.end(), [](const auto& part) {
      return part.starts_with('.') && hasStar(part);
    });
    require(!hidesStar, at, "matches nothing: \"*\" never stands for a hidden name");
    for (const auto& rule : catalog_.protectedPaths) {
      if (canTouch(components, patternComponents(rule.path))) {
        report(at, format("can never be offered: it touches the protected path \"{}\"", rule.path));
      }
    }
    for (const auto& ending : catalog_.protectedSuffixes) {
      const bool ends = std::any_of(components.begin(), components.end(),
                                    [&](const auto& part) { return part.ends_with(ending.path); });
      if (ends) {
        report(at, format("can never be offered: names in \"{}\" are protected", ending.path));
      }
    }
  }

  void checkAction(const Action& action, Tier tier, const std::string& at) {
    using Kind = Action::Kind;
    require(action.kind != Kind::remove || tier == Tier::rebuilds, at,
            "removes for good what doesn't rebuild itself");
    const bool needsCommand = action.kind == Kind::command;
    require(!needsCommand ||
                (action.command && !action.command->empty() && !action.command->front().empty()),
            at, "has no \"command\" to run");
    require(action.kind != Kind::handOff || action.app, at, "names no \"app\" that does it");
    require(action.kind != Kind::handOff || action.steps, at, "tells no \"steps\"");
    require(tier != Tier::personal || (action.kind != Kind::trash && !needsCommand), at,
            "would remove what is the user's own");
  }

  /// Of two places that overlap, a scan drops the later without a word.
  void checkReach() {
    struct Pattern {
      PatternComponents components;
      std::size_t place;
      std::string at;
    };
    std::vector<Pattern> patterns;
    for (std::size_t i = 0; i < catalog_.places.size(); ++i) {
      for (std::size_t j = 0; j < catalog_.places[i].paths.size(); ++j) {
        patterns.push_back({patternComponents(catalog_.places[i].paths[j]), i,
                            format("places[{}].paths[{}]", i, j)});
      }
    }
    for (std::size_t later = 0; later < patterns.size(); ++later) {
      for (std::size_t earlier = 0; earlier < later; ++earlier) {
        if (patterns[earlier].place != patterns[later].place &&
            canTouch(patterns[earlier].components, patterns[later].components)) {
          report(patterns[later].at, "overlaps " + patterns[earlier].at + ", which comes first");
        }
      }
    }
  }

  void checkOwners() {
    std::map<std::string, std::string> claims;
    for (std::size_t i = 0; i < catalog_.owners.size(); ++i) {
      const auto& owner = catalog_.owners[i];
      const auto at = format("owners[{}]", i);
      requireText(owner.app, at + ".app");
      const bool hasIDs = owner.bundleIDs && !owner.bundleIDs->empty();
      require(!owner.names.empty() || hasIDs, at, "has neither names nor bundleIDs to be known by");
      for (std::size_t j = 0; j < owner.names.size(); ++j) {
        const auto name = normalized(owner.names[j]);
        const auto here = format("{}.names[{}]", at, j);
        require(!name.empty(), here, "has no letter or digit to compare");
        const auto [claim, isNew] = claims.emplace(name, at);
        if (!isNew && claim->second != at) report(here, "is claimed by " + claim->second + " too");
      }
      for (const auto& bundleID : owner.bundleIDs.value_or(std::vector<std::string>())) {
        requireText(bundleID, at + ".bundleIDs");
      }
      if (owner.bundlePrefix) requireText(*owner.bundlePrefix, at + ".bundlePrefix");
    }
  }

  /// An empty prefix would match every name there is.
  void checkWords(const std::vector<std::string>& words, const std::string& at) {
    for (std::size_t i = 0; i < words.size(); ++i) requireText(words[i], format("{}[{}]", at, i));
  }

  void checkMarkers(const std::vector<std::string>& markers, const std::string& at) {
    for (std::size_t i = 0; i < markers.size(); ++i) {
      const auto here = format("{}[{}]", at, i);
      requireText(markers[i], here);
      require(isLowerCase(markers[i]), here, "must be in lower case");
      require(!markers[i].starts_with('.') || at.ends_with("folders"), here,
              "an extension is written without its dot");
    }
  }

  void checkLibraries() {
    for (std::size_t i = 0; i < catalog_.appLibraries.size(); ++i) {
      const auto at = format("appLibraries[{}]", i);
      requireText(catalog_.appLibraries[i].match, at + ".match");
      requireText(catalog_.appLibraries[i].app, at + ".app");
      requireText(catalog_.appLibraries[i].how, at + ".how");
    }
  }

  void checkThresholds() {
    std::apply(
        [&](const auto&... each) {
          (require(catalog_.thresholds.*each.member >= 0, format("thresholds.{}", each.key),
                   "is negative"),
           ...);
        },
        RecordFields<Catalog::Thresholds>::list);
  }

  const Catalog& catalog_;
  std::set<std::string> ids_;
  std::vector<JsonProblem> problems_;
};

}  // namespace

std::vector<JsonProblem> problemsIn(const Catalog& catalog) {
  return CatalogChecker(catalog).run();
}

CatalogVerdict checkCatalog(const std::optional<std::string>& path) {
  CatalogVerdict verdict;
  try {
    verdict.problems = problemsIn(Catalog::load(path));
  } catch (const DecodingError& error) {
    verdict.problems = error.problems();
  }
  verdict.ok = verdict.problems.empty();
  return verdict;
}

}  // namespace volbrin
