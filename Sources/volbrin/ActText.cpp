#include "ActText.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "ByteText.hpp"
#include "Output.hpp"
#include "Parallel.hpp"
#include "Text.hpp"

namespace volbrin::cli {
namespace {

using Status = CleanResult::Status;

std::string_view markOf(Status status) {
  switch (status) {
    case Status::done:
      return "✓ ";
    case Status::refused:
      return "⏸ ";
    case Status::failed:
      return "⚠︎ ";
    case Status::wouldDo:
      break;
  }
  return "";
}

/// An id as a shell takes it for one word, and the tool for no option.
std::string typed(const std::string& id) {
  const bool isPlain = !id.empty() && std::all_of(id.begin(), id.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_' || c == '.' || static_cast<unsigned char>(c) >= 0x80;
  });
  std::string word = id;
  if (!isPlain) {
    word = "'";
    for (const char c : id) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
    word += "'";
  }
  return id.starts_with('-') ? "-- " + word : word;
}

std::string historyEntryText(const HistoryEntry& entry, const Mac& mac) {
  const auto at = iso8601(entry.at);
  auto text = fmt::format(
      "{} {}  {}{}, {}  [{}]\n", std::string_view(at).substr(0, 10),
      std::string_view(at).substr(11, 5), entry.undone.value_or(false) ? "(undone) " : "",
      printableLine(entry.title), byteText(entry.bytes), printableLine(entry.id));
  for (const auto& [from, to, link, parked] : entry.relocated) {
    text +=
        fmt::format("    {} {} {}\n", printableLine(mac.display(from)),
                    link.value_or(false) ? "links to" : "went to", printableLine(mac.display(to)));
  }
  return text;
}

std::string headLine(const std::string& title, ByteCount bytes) {
  return fmt::format("{}  ({})\n", printableLine(title), byteText(bytes));
}

}  // namespace

std::string resultText(const CleanResult& result) {
  return headLine(result.title, result.bytes) +
         fmt::format("  {}{}\n", markOf(result.status), printableLine(result.detail));
}

std::string undoHint(const CleanResult& result, const Mac& mac) {
  if (!Cleaner::isUndoable(result.relocated, mac)) return "";
  return fmt::format("  Undo with: volbrin undo {}\n", printableLine(typed(result.id)));
}

std::string historyText(const std::vector<HistoryEntry>& entries, const Mac& mac) {
  if (entries.empty()) return "Nothing was done yet.\n";
  const auto texts =
      parallelMap(entries, [&](const HistoryEntry& entry) { return historyEntryText(entry, mac); });
  return joined(texts, "");
}

}  // namespace volbrin::cli
