#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <set>

#include "Files.hpp"
#include "OwnerResolver.hpp"
#include "RecordingPlatform.hpp"
#include "Text.hpp"

/// How well the shipped rules and the resolver together say whose a folder is, measured on what
/// popular apps keep in the Library (docs/judgement.md). With the environment variable
/// VOLBRIN_JUDGEMENT set, prints the table, and below each line what wasn't judged as it should be.
namespace volbrin::test {
namespace {

using Kind = OwnerResolver::Kind;
using Verdict = OwnerResolver::Verdict;
using Form = Verdict::Form;
using Apps = std::vector<InstalledApp>;

/// A folder that an app keeps in the Library.
struct Folder {
  Kind kind;
  std::string name;
  bool isShared;  ///< with other apps: a maker's folder, or one of the system's
  auto operator<=>(const Folder&) const = default;
};

struct Subject {
  std::string id;
  Apps apps;                       ///< it, and what comes with it
  std::vector<std::string> names;  ///< by which it may be called
  std::set<Folder> folders;
};

std::vector<std::string> strings(const Json& record, const char* key) {
  return record.contains(key) ? record.at(key).get<std::vector<std::string>>()
                              : std::vector<std::string>();
}

std::string before(const std::string& text, char stop) { return text.substr(0, text.find(stop)); }

InstalledApp app(const std::string& name, const std::vector<std::string>& bundleIDs = {}) {
  InstalledApp result;
  result.name = name;
  result.path = "/Applications/" + name + ".app";
  if (!bundleIDs.empty()) result.bundleID = bundleIDs.front();
  return result;
}

std::set<Folder> foldersOf(const Json& record) {
  std::set<Folder> folders;
  const auto makers = strings(record, "makerNamed");
  const auto add = [&](Kind kind, const std::string& name, bool isShared) {
    const bool isMakers = std::find(makers.begin(), makers.end(), name) != makers.end();
    folders.insert({kind, name, isShared || isMakers});
  };
  // Of "Maker/App" it is the maker's folder that is judged.
  const auto addAll = [&](const char* key, Kind kind, bool isShared) {
    for (const auto& path : strings(record, key)) add(kind, before(path, '/'), isShared);
  };
  addAll("support", Kind::supportFolder, false);
  addAll("caches", Kind::supportFolder, false);
  addAll("containers", Kind::container, false);
  addAll("groups", Kind::groupContainer, false);
  addAll("nestedSupport", Kind::supportFolder, true);
  addAll("nestedCaches", Kind::supportFolder, true);
  addAll("nestedGroups", Kind::groupContainer, true);
  const std::pair<std::string, Kind> places[] = {{"Application Support/", Kind::supportFolder},
                                                 {"Caches/", Kind::supportFolder},
                                                 {"Containers/", Kind::container},
                                                 {"Group Containers/", Kind::groupContainer}};
  for (const auto& pattern : strings(record, "patterns")) {
    for (const auto& [place, kind] : places) {
      if (!pattern.starts_with(place)) continue;
      const auto rest = pattern.substr(place.size());
      auto name = before(before(rest, '/'), '*');
      while (name.ends_with('.') || name.ends_with(' ')) name.pop_back();
      add(kind, name, rest.find('/') != std::string::npos);
    }
  }
  return folders;
}

const std::vector<Subject>& subjects() {
  static const auto all = [] {
    // What people know an app as, where its bundle is called something else.
    const std::map<std::string, std::string> otherNames = {{"chatgpt", "Codex"},
                                                           {"logitech-g-hub", "Logitech G HUB"}};
    std::vector<Subject> result;
    for (const auto& record : Json::parse(readFile(VOLBRIN_TEST_DATA "/mac-apps.json"))) {
      Subject subject;
      subject.id = record.at("cask").get<std::string>();
      subject.names = {record.at("app").get<std::string>()};
      subject.apps = {app(subject.names.front(), strings(record, "bundleIDs"))};
      for (const auto& other : strings(record, "otherApps")) {
        subject.names.push_back(other);
        subject.apps.push_back(app(other));
      }
      const auto name = otherNames.find(subject.id);
      if (name != otherNames.end()) subject.names.push_back(name->second);
      subject.folders = foldersOf(record);
      result.push_back(std::move(subject));
    }
    return result;
  }();
  return all;
}

bool isNameOf(const Subject& subject, const std::string& name) {
  const auto given = normalized(name);
  return std::any_of(subject.names.begin(), subject.names.end(), [&](const auto& each) {
    const auto own = normalized(each);
    return own.starts_with(given) || given.starts_with(own);
  });
}

struct Counts {
  int folders = 0;
  std::map<Form, int> forms;
  int rightName = 0, noName = 0, wrongName = 0;  ///< of the removed
  std::string misses;

  void add(const Subject& subject, const Folder& folder, const Verdict& verdict, bool isThere) {
    ++folders;
    ++forms[verdict.form];
    const bool isRemoved = verdict.form == Form::removed;
    const bool isNamed = verdict.name && isNameOf(subject, *verdict.name);
    if (isRemoved) ++(isNamed ? rightName : verdict.name ? wrongName : noName);
    if (isThere || folder.isShared ? !isRemoved : isRemoved && isNamed) return;
    misses += fmt::format("  {}: {} {}\n", subject.id, folder.name, jsonText(toJson(verdict)));
  }
};

/// A machine on which the folders of one app are judged.
struct Setting {
  const char* title;
  bool isThere;  ///< the app itself
  std::function<Apps(std::size_t)> apps;
};

/// Judges the folders of each app, shared ones or its own, each on a machine of its own.
Counts judge(const Catalog& catalog, const Setting& setting, bool isShared) {
  Counts counts;
  const Mac mac("", "/nowhere", std::make_shared<RecordingPlatform>());
  for (std::size_t i = 0; i < subjects().size(); ++i) {
    auto apps = setting.apps(i);
    std::sort(apps.begin(), apps.end(),
              [](const auto& a, const auto& b) { return a.path < b.path; });
    const AppIndex index(std::move(apps), {});
    const OwnerResolver resolver(index, catalog, {}, mac);
    for (const auto& folder : subjects()[i].folders) {
      if (folder.isShared != isShared) continue;
      counts.add(subjects()[i], folder, resolver.resolve(folder.name, folder.kind),
                 setting.isThere);
    }
  }
  if (std::getenv("VOLBRIN_JUDGEMENT") != nullptr) {
    std::cout << fmt::format("| {} | {} | {} | {} | {} | {} | {} | {} | {} |\n{}", setting.title,
                             isShared ? "shared" : "own", counts.folders,
                             counts.forms[Form::installed], counts.forms[Form::system],
                             counts.forms[Form::unknown], counts.rightName, counts.noName,
                             counts.wrongName, counts.misses);
  }
  return counts;
}

Apps itself(std::size_t i) { return subjects()[i].apps; }

/// With the app's name or identifier changed, where it is known by the other of the two.
Setting changed(const char* title, std::function<void(InstalledApp&)> change) {
  return {title, true, [change = std::move(change)](std::size_t i) {
            auto apps = itself(i);
            if (apps.front().bundleID) change(apps.front());
            return apps;
          }};
}

Apps withAStranger(std::size_t i) {
  auto apps = itself(i);
  apps.push_back(app("Photo Lab", {"com.maker.lab"}));
  return apps;
}

Apps nothing(std::size_t) { return {}; }

Apps allOthers(std::size_t i) {
  Apps apps;
  for (std::size_t j = 0; j < subjects().size(); ++j) {
    if (j != i) apps.insert(apps.end(), subjects()[j].apps.begin(), subjects()[j].apps.end());
  }
  return apps;
}

const Setting gone{"gone", false, nothing};
const Setting goneAmongOthers{"gone, all others here", false, allOthers};

TEST(JudgementTest, NoFolderOfAnAppThatIsHereIsCalledRemoved) {
  const auto catalog = Catalog::load();
  const Setting here[] = {{"here", true, itself},
                          {"here, with a stranger", true, withAStranger},
                          changed("here, renamed", [](auto& app) { app.name = "Favourite"; }),
                          // As a beta has it, or what a shop hands out.
                          changed("here, other edition", [](auto& app) { *app.bundleID += "-x"; })};
  for (const auto& setting : here) {
    auto counts = judge(catalog, setting, false);
    EXPECT_GT(counts.folders, 400);
    EXPECT_EQ(counts.forms[Form::removed], 0) << setting.title << "\n" << counts.misses;
  }
  for (const auto& setting : {here[0], gone, goneAmongOthers}) {
    auto counts = judge(catalog, setting, true);
    EXPECT_GT(counts.folders, 70);
    EXPECT_EQ(counts.forms[Form::removed] + counts.forms[Form::installed], 0)
        << setting.title << "\n"
        << counts.misses;
  }
}

TEST(JudgementTest, TheFoldersOfAnAppThatIsGoneAreFoundAndNamed) {
  const auto catalog = Catalog::load();
  // As measured. What is held to be somebody else's is less than could be offered, and no harm.
  const std::tuple<Setting, int, int> cases[] = {{gone, 406, 0}, {goneAmongOthers, 386, 20}};
  for (const auto& [setting, named, others] : cases) {
    auto counts = judge(catalog, setting, false);
    EXPECT_GE(counts.rightName, named) << setting.title << "\n" << counts.misses;
    EXPECT_LE(counts.forms[Form::installed], others) << setting.title << "\n" << counts.misses;
    EXPECT_EQ(counts.noName + counts.wrongName, 0) << setting.title << "\n" << counts.misses;
  }
}

TEST(JudgementTest, OfAppsThatTheRulesDontKnowFewAreCalledRemoved) {
  auto catalog = Catalog::load();
  catalog.owners.clear();
  auto here = judge(catalog, {"here, no app known", true, itself}, false);
  EXPECT_LE(here.forms[Form::removed], 59) << here.misses;  // as measured
  auto away = judge(catalog, {"gone, no app known", false, nothing}, false);
  EXPECT_GE(away.forms[Form::removed], 242) << away.misses;
}

}  // namespace
}  // namespace volbrin::test
