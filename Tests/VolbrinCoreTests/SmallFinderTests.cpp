#include <gmock/gmock.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>

#include "FinderTest.hpp"
#include "Finders/Installers.hpp"
#include "Finders/Simulators.hpp"
#include "Finders/StaleMounts.hpp"
#include "Finders/UnusedApps.hpp"
#include "PrivacyFence.hpp"
#include "RecordingPlatform.hpp"

namespace volbrin::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

/// The end of all ages here: still February in London, already March in Tokyo.
const Date cutoff = *parseIso8601("2026-02-28T15:30:00Z");

class SmallFinderTest : public FinderTest {
 protected:
  SmallFinderTest() {
    options_.now = cutoff + std::chrono::days(30);
    catalog_.thresholds.installerDays = catalog_.thresholds.unusedAppDays = 30;
    stand(icu::Locale::getGermany(), icu::TimeZone::createTimeZone("Asia/Tokyo"));
  }
  ~SmallFinderTest() override { stand(locale_, zone_.release()); }

  static void stand(const icu::Locale& locale, icu::TimeZone* zone) {
    UErrorCode status = U_ZERO_ERROR;
    icu::Locale::setDefault(locale, status);
    icu::TimeZone::adoptDefault(zone);
  }

 private:
  icu::Locale locale_ = icu::Locale::getDefault();
  std::unique_ptr<icu::TimeZone> zone_{icu::TimeZone::createDefault()};
};

TEST_F(SmallFinderTest, OffersOldInstallers) {
  for (const char* app : {"Foob", "Barbar", "Caf\u00e9s", "Quux!"}) {
    machine_.app(std::string("/Applications/") + app + ".app", "com.maker.x");
  }
  std::string expected, found;
  // The file and what its reason says of an app; "-" when it isn't offered.
  for (const std::string each : {"\n.dmg:", "Foob 2.dmg:", "Foob.zip:-", "a.pkg:", "a.tar:-",
                                 "b.Xip:", "bar-bar2.dmg:Barbar", "barba.zip:-",
                                 "cafe\u0301s.zip:Caf\u00e9s", "my barbar.zip:-", "\xff.dmg:"}) {
    const auto name = each.substr(0, each.find(':')), app = each.substr(name.size() + 1);
    setDate(machine_.file("~/Downloads/" + name), cutoff - std::chrono::seconds(1));
    if (app == "-") continue;
    expected += name + "1 März 2026" + (app.empty() ? "." : "; " + app + " is already installed.");
  }
  setDate(machine_.file("~/Downloads/new.dmg"), cutoff);
  setDate(machine_.file("~/Downloads/.hidden.dmg"), Date());
  setDate(machine_.folder("~/Downloads/folder.pkg"), Date());
  setDate(machine_.link("~/Downloads/link.pkg", "folder.pkg"), Date());
  for (const auto& each : find(InstallersFinder()).findings)
    found += each.title + each.reason.substr(31);
  EXPECT_EQ(found, expected);
  setDate(machine_.fileOfSize("~/Downloads/Barbar-4.1.ZIP", 65536), cutoff - std::chrono::days(9));
  EXPECT_EQ(told(onlyOne(InstallersFinder(), catalog_.thresholds.installerBytes)),
            "installer-barbar41zip|installers|Barbar-4.1.ZIP|An installer you downloaded on 20 "
            "Februar 2026; Barbar is already installed.|Download it again from its maker if you "
            "ever need it.|reinstallable|~/Downloads/Barbar-4.1.ZIP|trash");
  const FenceGuard fence({machine_.path("~/Downloads")});
  EXPECT_THAT(listed(InstallersFinder()), IsEmpty());
}

TEST_F(SmallFinderTest, OffersAppsThatNobodyOpens) {
  catalog_.pluginVendors = {"com.synth"};
  machine_.folder("~/Library/Audio/Plug-Ins/VST/Modular Pro.vst");
  Json dates = Json::object();
  std::vector<std::string> expected, offered;
  // With a "+" what is offered, then the app and its identifier.
  for (const char* each :
       {"+/Applications/A/B com.maker.b", "+/Applications/Store com.apple.s",
        "-/Applications/F com.Apple.f", "+~/Applications/\n\u00e9 com.maker.e",
        "+~/Applications/None -", "-/Applications/H com.maker.h",
        "-/Applications/Modular com.maker.m", "-/Applications/New com.maker.n",
        "-/Applications/Never com.maker.v", "-/Applications/S com.Synth.s",
        "-/System/Applications/T com.maker.t", "-/Volumes/Ext/Applications/U com.maker.u"}) {
    const auto words = split(each, ' ');
    const auto path = std::string(words[0].substr(1)) + ".app";
    words[1] == "-" ? machine_.folder(path) : machine_.app(path, words[1]);
    dates[path] = path.ends_with("New.app") ? "2026-02-28T15:30:00Z" : "2026-02-28T15:29:59Z";
    if (each[0] == '+') expected.push_back(path);
  }
  dates.erase("/Applications/Never.app");
  dates["/Applications/A/B.app"] = "2025-12-31T15:00:00Z";
  machine_.folder("/Applications/Store.app/Contents/_MASReceipt");
  setDrives(R"(, "running": ["com.maker.h", "com.Maker.b"], "lastUsed": )" + jsonText(dates));
  for (const auto& each : find(UnusedAppsFinder()).findings) {
    offered.push_back(machine_.mac().display(each.paths.at(0)));
    EXPECT_EQ(each.getBack, each.title == "Store" ? "Download it again from the App Store."
                                                  : "Download it again from its maker.");
  }
  EXPECT_THAT(offered, ::testing::UnorderedElementsAreArray(expected));
  machine_.fileOfSize("/Applications/A/B.app/data", 65536);
  EXPECT_EQ(
      told(onlyOne(UnusedAppsFinder(), catalog_.thresholds.unusedAppBytes)),
      "unused-app-b|unused-apps|B|You last opened B in Januar 2026.|Download it again from its "
      "maker.|reinstallable|/Applications/A/B.app|trash|owner=B|caution=Its settings stay "
      "behind until you remove them too; they show up as leftovers once the app is gone.");
}

TEST_F(SmallFinderTest, OffersSimulatorsThroughXcode) {
  const std::string runtimes =
      R"(, "simRuntimes": [{"id": "A-1", "name": "iOS 17", "bytes": 99999}], "running": [")";
  const std::string story =
      "sim-runtime-A-1|simulators|iOS 17 simulator|The iOS 17 simulator Xcode uses to run apps on "
      "a pretend device.|Xcode downloads it again (Settings → Components) when you need "
      "it.|reinstallable||command|command=xcrun simctl runtime delete A-1|owner=Xcode";
  setDrives(runtimes + "com.apple.dt.xcode.helper\"]");
  EXPECT_EQ(told(onlyOne(SimulatorsFinder(), catalog_.thresholds.place)), story);
  setDrives(runtimes + "com.apple.iphoneSimulator\"]");
  EXPECT_EQ(toldFirst(SimulatorsFinder()),
            story + "|blockedBy=Iphonesimulator is open. Quit it first.");
  setDrives(runtimes + "com.apple.iphonesimulator\", \"com.apple.dt.Xcode\"]");
  EXPECT_EQ(toldFirst(SimulatorsFinder()), story + "|blockedBy=Xcode is open. Quit it first.");
}

TEST_F(SmallFinderTest, TellsThatXcodeIsOutOfReach) {
  const auto platform = std::make_shared<RecordingPlatform>();
  const Mac mac(machine_.root(), machine_.path("~"), platform);
  const std::string here = machine_.folder("~/Xcode/Dev"), gone = machine_.path("~/X code");
  const auto notes = [&](const std::string& output) {
    platform->outputs["/usr/bin/xcode-select -p"] = output;
    return SimulatorsFinder().find(ScanScene(mac, catalog_, options_).context()).notes;
  };
  const auto note = [](const std::string& path) {
    return "Xcode isn't reachable at " + path +
           " (its drive may be unplugged), so simulators weren't checked.";
  };
  for (const auto& output : {std::string(), "\t" + here + " \n\n"})
    EXPECT_THAT(notes(output), IsEmpty());
  EXPECT_THAT(notes(gone + "\n"), ElementsAre(note(gone)));
  const FenceGuard fence({machine_.path("~/Xcode")});
  EXPECT_THAT(notes(here), ElementsAre(note(here)));
  EXPECT_THAT(find(SimulatorsFinder()).notes, IsEmpty());
}

TEST_F(SmallFinderTest, FindsFoldersThatStandInADrivesPlace) {
  setDrives();
  for (const char* file : {"/Volumes/Ext/file", "/Volumes/file"}) machine_.file(file);
  machine_.link("/Volumes/Disk", "/");
  machine_.link("/Volumes/dangling", "nowhere");
  fill("/Volumes/My Drive");
  EXPECT_EQ(told(onlyOne(StaleMountsFinder(), catalog_.thresholds.staleMount)),
            "stale-volume-mydrive|stale-mounts|\"My Drive\" folder that isn't the drive|Something "
            "saved files into /Volumes/My Drive while My Drive wasn't plugged in, so they're on "
            "your Mac, not on the drive.|Plug the drive in and move what you want to keep onto it; "
            "nothing here is removed for you.|personal|/Volumes/My Drive|review");
  for (const auto& name : hostileNames) machine_.folder("/Volumes/" + name);
  EXPECT_EQ(listed(StaleMountsFinder()).size(), 1 + hostileNames.size());
  // On a real machine what is mounted there is passed over, as "pts" would be in /dev.
  const auto onMachine = [this](const Mac& mac) {
    std::string titles;
    const ScanScene scene(mac, catalog_, options_);
    for (const auto& finding : StaleMountsFinder().find(scene.context()).findings)
      titles += finding.title;
    return titles;
  };
  const auto real = [](const Machine& machine) {
    return Mac(machine.root(), machine.path("~"), std::make_shared<RecordingPlatform>());
  };
  const Machine other;
  other.link("/Volumes", "/dev");
  EXPECT_THAT(onMachine(real(machine_)), HasSubstr("\"My Drive\""));
  EXPECT_THAT(onMachine(real(other)), Not(HasSubstr("\"pts\"")));
  EXPECT_THAT(onMachine(other.mac()), HasSubstr("\"pts\""));
}

}  // namespace
}  // namespace volbrin::test
