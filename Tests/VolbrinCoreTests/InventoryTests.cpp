#include "Inventory.hpp"

#include <gmock/gmock.h>

#include "Machine.hpp"
#include "PrivacyFence.hpp"
#include "PropertyList.hpp"
#include "RecordingPlatform.hpp"

namespace volbrin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

InstalledApp app(std::string name, std::optional<std::string> bundleID) {
  InstalledApp result;
  result.name = std::move(name);
  result.bundleID = std::move(bundleID);
  return result;
}

using Lookup = const InstalledApp* (AppIndex::*)(std::string_view) const;

/// That `lookup` answers with the app `name` ("-" for none) to all of `wanted`.
void expectFound(const AppIndex& index, Lookup lookup, const char* name,
                 const std::vector<const char*>& wanted) {
  for (const char* each : wanted) {
    const auto* found = (index.*lookup)(each);
    EXPECT_EQ(found == nullptr ? "-" : found->name, name) << each;
  }
}

TEST(AppIndexTest, FindsAnAppByItsIdentifierShortenedFromTheRight) {
  const AppIndex index(
      {app("Lab", "com.Maker.Lab"), app("Maker", "com.maker"), app("Lone", "lone")}, {});
  const auto byID = &AppIndex::appByBundleID;
  expectFound(index, byID, "Lab", {"COM.MAKER.LAB.helper.x"});
  expectFound(index, byID, "Maker", {"com.maker.other", "com..maker."});
  expectFound(index, byID, "-", {"com.makers", "lone", "lone.app", "com", ""});
  const auto byPrefix = &AppIndex::appByBundlePrefix;
  expectFound(index, byPrefix, "Lab", {"com.maker.l", "COM.MAKER"});
  expectFound(index, byPrefix, "-", {"maker", "com.maker.x"});
}

TEST(AppIndexTest, FindsAnAppByItsNameOrMaker) {
  const AppIndex index({app("ABC", "com.abc.x"), app("Photo Lab", "main.Big-Maker.studio.lab"),
                        app("Photo Lab Pro", "bigmaker.pro"), app("Ämter", {})},
                       {});
  const auto named = &AppIndex::appNamed;
  expectFound(index, named, "Photo Lab", {"PHOTOLAB", "phot", "Photo Lab Extreme"});
  expectFound(index, named, "Photo Lab Pro", {"Photo Lab Pro"});
  expectFound(index, named, "Ämter", {"a\u0308MTER", "ämte"});
  expectFound(index, named, "-", {"ab", "abcx", "pho", "ämt", "...", ""});
  const auto fromMaker = &AppIndex::appFromMaker;
  expectFound(index, fromMaker, "Photo Lab", {"Big Maker", "studio", "main"});
  expectFound(index, fromMaker, "-", {"lab", "abc", "com", "bigm"});
}

TEST(AppIndexTest, KnowsTheHostsOfPlugins) {
  const AppIndex index({}, {"synthone", "ab"});
  for (const auto& host :
       {app("Any", "COM.VENDORS.any"), app("Synth", {}), app("SynthOne Ed", {})}) {
    EXPECT_TRUE(index.isPluginHost(host, {"com.Vendor"})) << host.name;
  }
  for (const auto& other : {app("Any", "org.com.vendor"), app("Syn", {})}) {
    EXPECT_FALSE(index.isPluginHost(other, {"com.Vendor"})) << other.name;
  }
}

std::vector<std::string> discovered(const Mac& mac, const AppIndex& index) {
  std::vector<std::string> paths;
  for (const auto& app : index.apps()) paths.push_back(mac.display(app.path));
  return paths;
}

TEST(AppDiscoveryTest, FindsTheBundlesOfAFakeMachine) {
  const Machine machine;
  machine.setFixture(R"({"drives": [
      {"name": "Disk", "path": "/", "total": 9, "free": 1},
      {"name": "Ext", "path": "/Volumes/Ext", "total": 9, "free": 1}],
      "lastUsed": {"/Applications/Foo.app": "2026-01-02T03:04:05Z"}})");
  for (const char* path :
       {"/Applications/Foo.app", "/Applications/Foo.app/Contents/Inner.app",
        "/Applications/a/b/c/Deep.app", "/Applications/a/b/c/d/TooDeep.app",
        "/Applications/.Hidden.app", "/Elsewhere/Linked.app", "~/Applications/Mine.app",
        "/System/Applications/Sys.app", "/Volumes/Ext/Applications/Foo.app",
        "/Volumes/Ext/Other/Nowhere.app", "/Volumes/Ext/Games/Game One.app"}) {
    machine.app(path, "com.Maker.app");
  }
  machine.link("/Applications/Linked.app", machine.path("/Elsewhere/Linked.app"));
  machine.link("/Applications/More", machine.path("/Elsewhere"));
  machine.file("/Applications/Broken.app/Contents/Info.plist", "<plist><dict><key>CFBundle");
  machine.file("~/Applications/Mine.app/Contents/_MASReceipt/receipt");

  const auto mac = machine.mac();
  const auto index = AppIndex::discover(mac, mac.drives(), {machine.path("/Volumes/Ext/Games")});
  EXPECT_THAT(discovered(mac, index),
              ElementsAre("/Applications/Broken.app", "/Applications/Foo.app",
                          "/Applications/a/b/c/Deep.app", "/System/Applications/Sys.app",
                          "~/Applications/Mine.app", "/Volumes/Ext/Applications/Foo.app",
                          "/Volumes/Ext/Games/Game One.app"));
  EXPECT_EQ(*index.appNamed("foo"),
            (InstalledApp{"Foo", "com.Maker.app", machine.path("/Applications/Foo.app"), true,
                          parseIso8601("2026-01-02T03:04:05Z"), false}));
  EXPECT_EQ(index.appNamed("broken")->bundleID, std::nullopt);
  EXPECT_TRUE(index.appNamed("mine")->fromAppStore);

  const FenceGuard fence({machine.path("/Applications"), machine.path("~")});
  EXPECT_THAT(discovered(mac, AppIndex::discover(mac, {}, {})),
              ElementsAre("/System/Applications/Sys.app"));
}

TEST(AppDiscoveryTest, ReadsNoBundleThatNestsWithoutEnd) {
  const std::string head =
      "<plist version=\"1.0\"><dict><key>CFBundleIdentifier</key><string>com.a.b</string>";
  const auto nested = [&](int levels) {
    std::string text = head + "<key>x</key>";
    for (int i = 0; i < levels; ++i) text += "<array>";
    for (int i = 0; i < levels; ++i) text += "</array>";
    return text + "</dict></plist>";
  };
  EXPECT_EQ(stringInPropertyList(nested(100), "CFBundleIdentifier"), "com.a.b");
  EXPECT_EQ(stringInPropertyList(nested(300'000), "CFBundleIdentifier"), std::nullopt);

  // The binary form: an array in an array, and so on; each is a length of 1 and a place of 3 bytes.
  constexpr std::size_t levels = 300'000;
  const auto big = [](std::size_t value, int bytes) {
    std::string text;
    for (int i = bytes - 1; i >= 0; --i) text += static_cast<char>(value >> (8 * i) & 0xFFU);
    return text;
  };
  std::string binary = "bplist00", places;
  for (std::size_t i = 0; i < levels; ++i) {
    places += big(binary.size(), 4);
    binary += "\xA1" + big(i + 1, 3);
  }
  places += big(binary.size(), 4);
  binary += '\x50';  // the empty text
  const auto table = binary.size();
  binary +=
      places + std::string(6, '\0') + "\x04\x03" + big(levels + 1, 8) + big(0, 8) + big(table, 8);
  EXPECT_EQ(stringInPropertyList(binary, "CFBundleIdentifier"), std::nullopt);
}

TEST(AppDiscoveryTest, CollectsThePluginsOfTwoLevels) {
  const Machine machine;
  machine.folder("/Library/Audio/Plug-Ins/Direct.CLAP/In.vst");
  machine.folder("/Library/Audio/Plug-Ins/VST/--.vst");
  machine.folder("/Library/Audio/Plug-Ins/VST/Maker/Deep.vst");
  machine.folder("~/Library/Audio/Plug-Ins/VST3/Synth One.vst3");
  const auto index = AppIndex::discover(machine.mac(), {}, {});
  EXPECT_THAT(index.pluginNames(), UnorderedElementsAre("synthone", "direct"));
}

TEST(AppDiscoveryTest, AsksARealMachineForItsIndex) {
  const auto platform = std::make_shared<RecordingPlatform>();
  platform->index = {"/a/Outer.app/Inner.app", "/a/.Trash/Gone.app",   "/System/Sys.app",
                     "/private/Private.app",   "/Volumes/Ext/Far.app", "/Volumes/Ext2/Near.app"};
  const Mac mac("", "/nowhere", platform);
  const auto index = AppIndex::discover(mac, {{"Ext", "/Volumes/Ext", false, 9, 1, 1}}, {});
  ASSERT_THAT(discovered(mac, index),
              ElementsAre("/Volumes/Ext/Far.app", "/Volumes/Ext2/Near.app"));
  EXPECT_FALSE(index.apps()[0].onStartupDisk);
  EXPECT_TRUE(index.apps()[1].onStartupDisk);
}

}  // namespace
}  // namespace volbrin::test
