#include "Report.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "ByteText.hpp"
#include "Text.hpp"

namespace volbrin {
namespace {

using fmt::format;

constexpr std::size_t sizeColumn = 8;
constexpr const char* indent = "           ";  // below a finding's title

/// Padded with blanks, or cut, to the width of the size column. Sizes are ASCII.
std::string sizeCell(ByteCount bytes) {
  std::string text = byteText(bytes);
  text.resize(sizeColumn, ' ');
  return text;
}

std::string findingText(const Finding& finding) {
  std::string text = format("  {} {}  [{}]\n", sizeCell(finding.bytes), finding.title, finding.id);
  text += format("{}{}\n", indent, finding.reason);
  if (finding.caution) text += format("{}⚠︎ {}\n", indent, *finding.caution);
  if (finding.blockedBy) text += format("{}⏸ {}\n", indent, *finding.blockedBy);
  if (finding.action.kind == Action::Kind::handOff && finding.action.steps) {
    text += format("{}→ {}\n", indent, *finding.action.steps);
  }
  return text;
}

std::string tierText(Tier tier, const std::vector<Finding>& findings) {
  ByteCount bytes = 0;
  std::string text;
  for (const auto& finding : findings) {
    if (finding.tier != tier) continue;
    bytes = addBytes(bytes, finding.bytes, "the bytes of a tier");
    text += findingText(finding);
  }
  return text.empty() ? "" : format("\n{} ({})\n{}", title(tier), byteText(bytes), text);
}

std::string notesText(const std::vector<std::string>& notes) {
  std::string text = notes.empty() ? "" : "\n";
  for (const auto& note : notes) text += format("• {}\n", note);
  return text;
}

/// The paths of the entries whose reason begins with `words`.
std::vector<std::string> skippedFor(std::string_view words, const ScanReport& report,
                                    const Mac& mac) {
  std::vector<std::string> paths;
  for (const auto& skipped : report.skipped) {
    if (std::string_view(skipped.why).starts_with(words))
      paths.push_back(mac.display(skipped.path));
  }
  return paths;
}

std::string skippedText(const ScanReport& report, const Mac& mac) {
  std::string text;
  if (const auto partly = skippedFor("partly unreadable", report, mac); !partly.empty()) {
    text += format("\n{} place{} couldn't be fully read (Full Disk Access would show more).\n",
                   partly.size(), partly.size() == 1 ? "" : "s");
  }
  if (const auto linked = skippedFor("reached through a link", report, mac); !linked.empty()) {
    text +=
        format("\nLeft alone because they're reached through a link: {}.\n", joined(linked, ", "));
  }
  if (const auto cloud = skippedFor("never looked into", report, mac); !cloud.empty()) {
    text +=
        format("\nNot looked into, because a cloud drive syncs them: {}.\n", joined(cloud, ", "));
  }
  return text;
}

std::string goalText(const Goal& goal, const DriveInfo& drive) {
  const ByteCount bytes = goal.bytesOf(drive.totalBytes);
  if (drive.freeBytes >= bytes) return format(" (goal {}: met)", goal.description());
  const ByteCount missing = subtractBytes(bytes, drive.freeBytes, "what a goal is short of");
  return format(" (goal {}: {} short)", goal.description(), byteText(missing));
}

std::string fewestText(const Plan& plan, const ScanReport& report) {
  if (!plan.fewest) {
    const bool anyReaches = std::any_of(plan.routes.begin(), plan.routes.end(),
                                        [](const Route& route) { return route.reachesGoal; });
    return anyReaches
               ? "\nThe goal needs your own files moved or other apps' help: see the routes marked "
                 "✓.\n"
               : "\nNo route reaches the goal; the rest is your own files to decide about.\n";
  }
  std::map<std::string_view, const Finding*> findings;
  for (const auto& finding : report.findings) findings.emplace(finding.id, &finding);

  std::string text = format("\nFewest steps to {}:\n", byteText(plan.goalBytes));
  if (plan.trashBytes >= 1) text += format("  empty the Trash ({})\n", byteText(plan.trashBytes));
  for (const auto& id : plan.fewest->findingIDs) {
    const auto found = findings.find(id);
    if (found == findings.end()) continue;
    text += format("  {} ({})  [{}]\n", found->second->title, byteText(found->second->bytes), id);
  }
  return text;
}

}  // namespace

std::string Report::bytes(ByteCount count) { return byteText(count); }

std::string Report::drives(const ScanReport& report, const std::optional<Goal>& goal) {
  std::vector<std::string> lines;
  for (const auto& drive : report.drives) {
    lines.push_back(format("{}: {} free of {}{}", drive.name, byteText(drive.freeBytes),
                           byteText(drive.totalBytes),
                           drive.isStartup && goal ? goalText(*goal, drive) : ""));
  }
  std::string text = joined(lines, "\n");
  if (report.trashBytes > 0) {
    text += format("\nTrash: {}, freed when you empty it", byteText(report.trashBytes));
  }
  return text;
}

std::string Report::text(const ScanReport& report, const Mac& mac,
                         const std::optional<Goal>& goal) {
  std::string text = drives(report, goal) + "\n";
  for (const Tier tier : allTiers) text += tierText(tier, report.findings);
  if (report.findings.empty()) text += "\nNothing worth freeing found.\n";
  return text + notesText(report.notes) + skippedText(report, mac);
}

std::string Report::text(const Plan& plan, const ScanReport& report) {
  std::string text = format("{}: {} free, goal {} ({})\n", plan.drive.name, byteText(plan.freeNow),
                            plan.goal, byteText(plan.goalBytes));
  if (plan.trashBytes >= 1) {
    text += format("Every route includes emptying the Trash ({}).\n", byteText(plan.trashBytes));
  }
  text += "\n";
  for (const auto& route : plan.routes) {
    text += format("{} {}: +{} → {} free\n", route.reachesGoal ? "✓" : "·", route.title,
                   byteText(route.bytes), byteText(route.freeAfter));
  }
  return text + fewestText(plan, report) + notesText(plan.notes);
}

}  // namespace volbrin
