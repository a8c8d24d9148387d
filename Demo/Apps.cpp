#include "Apps.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string>

#include "Piles.hpp"
#include "Scale.hpp"
#include "TreeWriter.hpp"

namespace volbrin::demo {

namespace {

/// A big app has more resources than a small one; never so many that they'd be all it is made of.
int resourceCount(double megabytes) { return std::clamp(static_cast<int>(megabytes / 60), 1, 24); }

constexpr auto plugIns = std::to_array<Pile>({
    {"/Library/Audio/Plug-Ins/Components/Kontakt 7.component/Contents", "MacOS/{w}-{i}", 1, 120,
     300, 300},
    {"/Library/Audio/Plug-Ins/Components/Massive X.component/Contents", "MacOS/{w}-{i}", 1, 90, 500,
     500},
    {"/Library/Audio/Plug-Ins/VST3/Native Instruments/Kontakt 7.vst3/Contents", "MacOS/{w}-{i}", 1,
     120, 300, 300},
    {"/Library/Audio/Plug-Ins/VST/Serum.vst/Contents", "MacOS/{w}-{i}", 1, 60, 640, 640},
    {"/Library/Application Support/Avid/Audio/Plug-Ins/Serum.aaxplugin/Contents", "MacOS/{w}-{i}",
     1, 60, 640, 640},
    {"~/Library/Audio/Plug-Ins/CLAP/Vital.clap/Contents", "MacOS/{w}-{i}", 1, 50, 380, 380},
});

}  // namespace

void writeApp(TreeWriter& writer, const App& app) {
  const std::size_t slash = app.path.rfind('/');
  const std::string_view name =
      app.path.substr(slash + 1, app.path.size() - slash - std::string_view("/.app").size());
  const std::string contents = fmt::format("{}/Contents", app.path);

  const std::string info = infoPlist({.bundleId = app.bundleId,
                                      .name = name,
                                      .executable = name,
                                      .version = app.version,
                                      .teamId = app.teamId},
                                     app.form);
  writer.text(contents + "/Info.plist", info, app.installedDays);

  // A third is the executable; the bundle, Contents, MacOS and Info.plist take a block each.
  const std::int64_t blocks = blocksFor(app.megabytes);
  const std::int64_t executable = std::max<std::int64_t>(1, (blocks - 4) / 3);
  writer.file(fmt::format("{}/MacOS/{}", contents, name), executable * blockBytes - 700,
              app.installedDays, {}, 0755);
  double spent = static_cast<double>(executable + 4) / static_cast<double>(blocks);
  if (app.receipt == Receipt::appStore) {
    writer.file(contents + "/_MASReceipt/receipt", 3300, app.installedDays);
    spent += 2.0 / static_cast<double>(blocks);
  }
  const std::string resources = contents + "/Resources";
  writePile(writer, {resources, "{w}-{i2}.car", resourceCount(app.megabytes),
                     app.megabytes * (1 - spent), app.installedDays, app.installedDays});
}

void writeApps(TreeWriter& writer) {
  for (const App& app : allApps()) writeApp(writer, app);
  writePiles(writer, plugIns);
}

}  // namespace volbrin::demo
