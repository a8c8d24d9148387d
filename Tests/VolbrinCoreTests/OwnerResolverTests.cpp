#include "OwnerResolver.hpp"

#include <gmock/gmock.h>

#include "Machine.hpp"
#include "PrivacyFence.hpp"
#include "RecordingPlatform.hpp"

namespace volbrin::test {
namespace {

using ::testing::Contains;
using ::testing::Not;
using ::testing::StartsWith;
using Kind = OwnerResolver::Kind;
using Verdict = OwnerResolver::Verdict;
using Form = Verdict::Form;

Verdict installed(std::string name) { return {Form::installed, std::move(name)}; }
Verdict removed(std::optional<std::string> name = {}) { return {Form::removed, std::move(name)}; }
const Verdict systemsOwn{Form::system, {}};
const Verdict unknown{Form::unknown, {}};

/// That every one of `names` gets the verdict.
void expectVerdict(const OwnerResolver& resolver, Kind kind, const Verdict& expected,
                   const std::vector<const char*>& names) {
  for (const char* name : names) {
    EXPECT_EQ(jsonText(toJson(resolver.resolve(name, kind))), jsonText(toJson(expected))) << name;
  }
}

InstalledApp app(std::string name, std::string bundleID) {
  InstalledApp result;
  result.path = "/Applications/" + name + ".app";
  result.name = std::move(name);
  result.bundleID = std::move(bundleID);
  return result;
}

TEST(OwnerResolverTest, TheCatalogComesBeforeWhatTheNameLooksLike) {
  Catalog catalog;
  catalog.systemNames = {"Apple Stuff"};
  catalog.systemPrefixes = {"com.Apple."};
  catalog.owners = {{{"Old Thing"}, "First", {{"com.first.app"}}, {}, {}},
                    {{"Lab", "com.apple.lab"}, "Second", {}, "com.maker.la", {}},
                    {{"com.first.app"}, "Third", {}, {}, {}},
                    {{"Game"}, "The Game", {}, {}, "440"},
                    {{"Note"}, "Notes", {{"com.gone.notes"}}, {}, {}}};
  const AppIndex apps({app("Lab Bench", "com.maker.lab"), app("Notebook", "org.note.book")}, {});
  const Mac mac("", "/nowhere", std::make_shared<RecordingPlatform>());
  const OwnerResolver resolver(apps, catalog, {{"440", "Game", "game"}}, mac);
  for (const Kind kind : {Kind::container, Kind::groupContainer, Kind::supportFolder}) {
    expectVerdict(resolver, kind, systemsOwn, {"apple stuff", "COM.apple.lab"});
    expectVerdict(resolver, kind, removed("First"), {"old-thing", "com.First.app.helper"});
    // A name that any owner has goes before an identifier that an earlier one has.
    expectVerdict(resolver, kind, removed("Third"), {"com.first.app"});
    expectVerdict(resolver, kind, installed("Second"), {"lab"});
    expectVerdict(resolver, kind, installed("The Game"), {"game"});
    expectVerdict(resolver, kind, installed("Notes"), {"note", "com.gone.notes"});
    expectVerdict(resolver, kind, removed(), {"com.first.apps", "com.applejack.x"});
  }
}

TEST(OwnerResolverTest, EachKindOfFolderIsReadInItsWay) {
  const Machine machine;
  machine.app("/Applications/Photo Lab.app", "com.maker.lab", "ABCDE12345");
  machine.app("/Applications/Shared.app", "com.maker.shared.app");
  const auto mac = machine.mac();
  const auto apps = AppIndex::discover(mac, mac.drives(), {});
  Catalog catalog;
  catalog.systemPrefixes = {"com.apple."};
  const OwnerResolver resolver(apps, catalog, {{"440", "Great Game 2", "gg2"}}, mac);

  const Verdict lab = installed("Photo Lab");
  expectVerdict(resolver, Kind::container, lab, {"com.maker.lab", "com.Maker.Lab.helper"});
  expectVerdict(resolver, Kind::container, removed(), {"com.gone.app", "foo", "Photo Lab"});
  expectVerdict(resolver, Kind::container, {}, {"0B6F9A2C-1D3E-4F50-8A7B-9C0D1E2F3A4B"});

  const Kind group = Kind::groupContainer;
  expectVerdict(resolver, group, lab, {"group.com.maker.lab", "ABCDE12345.com.maker.lab"});
  expectVerdict(resolver, group, installed("Shared"),
                {"GROUP.com.maker.shared", "ZZZZZ12345.com.maker.sh"});
  expectVerdict(resolver, group, systemsOwn, {"group.com.apple.notes"});
  expectVerdict(resolver, group, installed("com.gone.x"),
                {"ABCDE12345.com.gone.x", "group.ABCDE12345.com.gone.x"});
  expectVerdict(resolver, group, removed("shared"), {"ZZZZZ12345.shared"});
  expectVerdict(resolver, group, removed(),
                {"group.com.gone.app", "abcde12345.com.gone.x", "ABCDE1234.com.gone.x"});
  expectVerdict(resolver, group, unknown, {"group.shared", "group.com.gone", "ABCDE12345"});

  const Kind support = Kind::supportFolder;
  expectVerdict(resolver, support, lab, {"com.maker.lab", "photolab", "Photo", "Maker"});
  expectVerdict(resolver, support, removed(), {"com.gone.app", "ABCDE12345.com.gone.x"});
  expectVerdict(resolver, support, installed("Great Game 2"), {"great-game 2", "GG2"});
  expectVerdict(resolver, support, unknown,
                {"Maker Stuff", "com.gone app.x", "com.gone", "com..app", ".com.app", "com.app."});
}

TEST(OwnerResolverTest, AnAppTheSystemKnowsCountsWhileItIsThereAndNotInTheTrash) {
  const TemporaryFolder home;
  const auto platform = std::make_shared<RecordingPlatform>();
  platform->appPaths = {{"com.deep.app", home.folder("deep/Deep.app")},
                        {"com.trashed.app", home.folder(".Trash/Trashed.app")},
                        {"com.stale.app", home.at("Stale.app")},
                        {"com.fenced.app", home.folder("Documents/Fenced.app")}};
  Catalog catalog;
  catalog.owners = {{{"Deep"}, "Deep Owner", {{"com.x.y", "com.deep.app"}}, {}, {}},
                    {{"Trashed"}, "Trashed Owner", {{"com.x.z", "com.trashed.app"}}, {}, {}}};
  const AppIndex none;
  const Mac mac("", home.path(), platform);
  const OwnerResolver byCatalog(none, catalog, {}, mac);
  const OwnerResolver resolver(none, emptyCatalog(), {}, mac);
  const FenceGuard fence({home.at("Documents")});
  expectVerdict(byCatalog, Kind::supportFolder, installed("Deep Owner"), {"deep"});
  expectVerdict(byCatalog, Kind::supportFolder, removed("Trashed Owner"), {"trashed"});
  for (const Kind kind : {Kind::container, Kind::groupContainer, Kind::supportFolder}) {
    expectVerdict(resolver, kind, installed("com.deep.app"), {"com.deep.app"});
    expectVerdict(resolver, kind, removed(),
                  {"com.deep.app.more", "com.trashed.app", "com.stale.app", "com.fenced.app"});
  }
}

TEST(OwnerResolverTest, TheTeamsAreReadOnceAndOnlyWhenNeeded) {
  const AppIndex apps({app("One", "com.a.one"), app("Two", "com.a.two")}, {});
  const auto platform = std::make_shared<RecordingPlatform>();
  platform->teams = {{"/Applications/Two.app", "ABCDE12345"}};
  const Mac mac("", "/Users/me", platform);
  const OwnerResolver resolver(apps, emptyCatalog(), {}, mac);
  EXPECT_EQ(resolver.resolve("ABCDE12345.com.a.one", Kind::groupContainer), installed("One"));
  EXPECT_THAT(platform->touches(), Not(Contains(StartsWith("team "))));
  for (const char* name : {"ABCDE12345.com.gone.x", "ABCDE12345.com.gone.y"}) {
    EXPECT_EQ(resolver.resolve(name, Kind::groupContainer).form, Form::installed) << name;
  }
  EXPECT_THAT(platform->touches(), Contains(StartsWith("team ")).Times(2));
}

}  // namespace
}  // namespace volbrin::test
