#include <fmt/format.h>

#include "ActFlow.hpp"
#include "ByteText.hpp"
#include "Commands.hpp"
#include "ICloud/ICloud.hpp"

namespace volbrin::cli {
namespace {

CloudSizes sizesOf(const Session& session) {
  CloudSizes sizes;
  sizes.minimum = session.byteCount("--min-bytes").value_or(sizes.minimum);
  sizes.big = session.byteCount("--big-bytes").value_or(sizes.big);
  sizes.sizeOnly = session.byteCount("--size-only-bytes").value_or(sizes.sizeOnly);
  return sizes;
}

std::string itemText(const CloudItem& item, const Mac& mac) {
  auto text = fmt::format("  {:>8} {}  {}  [{}]\n", byteText(item.bytes),
                          item.onMac ? "on this Mac" : "in iCloud  ",
                          printableLine(ICloud::display(item.path, mac)), item.id);
  if (item.caution) text += fmt::format("           ⚠︎ {}\n", printableLine(*item.caution));
  return text;
}

std::string scanText(const CloudScan& scan, const Mac& mac) {
  auto text = fmt::format("iCloud Drive: {} files, {}, {} of it on this Mac\n", scan.files,
                          byteText(scan.bytes), byteText(scan.onMacBytes));
  if (scan.roots.empty()) text = "There is no iCloud Drive here.\n";
  for (const auto& group : scan.groups) {
    text += fmt::format("\nCopies of {}{}; {} stays, {}\n", printableLine(group.name),
                        group.sameName ? "" : " by its size", printableLine(group.keepPlace),
                        printableLine(ICloud::display(group.keep, mac)));
    for (const auto& item : group.items) text += itemText(item, mac);
  }
  if (!scan.biggest.empty()) text += "\nBig files with no other copy\n";
  for (const auto& item : scan.biggest) text += itemText(item, mac);
  return text;
}

CloudOptions cloudOptions(Session& session) {
  const auto& arguments = session.arguments();
  CloudOptions options;
  options.chunkBytes = session.byteCount("--chunk-bytes").value_or(5'000'000'000);
  options.marginBytes = session.byteCount("--margin-bytes").value_or(5'000'000'000);
  options.agreed = arguments.has("--agree");
  options.drive = session.drive("--drive", session.mac().drives()).value_or("");
  return options;
}

Acted runCloudClean(Session& session, const std::vector<std::string>& ids, const CloudScan& scan,
                    CloudOptions options, bool dryRun) {
  options.dryRun = dryRun;
  ActionProgress progress(displayFor(session));
  if (!dryRun) progress.begin("iCloud Drive");
  session.endProgress();
  return {
      ICloud::clean(
          ids, scan, session.mac(), options, [&](const std::string& line) { progress.say(line); },
          [&] { return progress.isStopped(); }),
      {}};
}

}  // namespace

ExitStatus cloudScan(Session& session) {
  const auto sizes = sizesOf(session);
  const auto& mac = session.mac();
  const auto scan = ICloud::scan(mac, mac.drives(), sizes);
  if (session.wantsJson()) {
    session.output().json(toJson(scan));
  } else {
    session.output().text(scanText(scan, mac));
  }
  return ExitStatus::done;
}

ExitStatus cloudClean(Session& session) {
  const auto manner = mannerOf(session);
  const auto sizes = sizesOf(session);
  const auto options = cloudOptions(session);
  const auto scan = ICloud::scan(session.mac(), session.mac().drives(), sizes);
  return actOnIds(session, manner, [&](const std::vector<std::string>& ids, bool dryRun) {
    return runCloudClean(session, ids, scan, options, dryRun);
  });
}

}  // namespace volbrin::cli
