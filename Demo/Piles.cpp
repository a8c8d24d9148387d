#include "Piles.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <numeric>
#include <set>
#include <string>
#include <vector>

#include "Chance.hpp"
#include "Scale.hpp"
#include "TreeWriter.hpp"

namespace volbrin::demo {

namespace {

constexpr std::array<std::string_view, 40> words = {
    "account", "anchor", "archive", "button",  "calendar", "camera",  "canvas",   "channel",
    "chart",   "client", "color",   "column",  "context",  "cursor",  "detail",   "editor",
    "events",  "filter", "gallery", "harbour", "header",   "index",   "journey",  "layout",
    "loader",  "map",    "message", "network", "palette",  "player",  "profile",  "report",
    "router",  "scroll", "search",  "session", "store",    "summary", "timeline", "widget"};

/// The text for one placeholder, such as "h8", in the name of file number `number`.
std::string placeholder(std::string_view name, int number, Chance& chance) {
  std::size_t argument = 0;
  std::from_chars(name.data() + 1, name.data() + name.size(), argument);
  switch (name.front()) {
    case 'i':
      return fmt::format("{:0{}}", number, std::max<std::size_t>(argument, 1));
    case 'h':
      return chance.hex(argument);
    case 'b':
      // Spread over the two digits, as the beginnings of hashes are.
      return fmt::format("{:02x}", chance.below(argument) * 256 / argument + 7);
    case 'u':
      return chance.uuid();
    default:
      return std::string(words[chance.below(words.size())]);
  }
}

std::string fileName(std::string_view pattern, int number, Chance& chance) {
  std::string name;
  while (!pattern.empty()) {
    const std::size_t open = pattern.find('{');
    name += pattern.substr(0, open);
    if (open == std::string_view::npos) break;
    const std::size_t close = pattern.find('}', open);
    name += placeholder(pattern.substr(open + 1, close - open - 1), number, chance);
    pattern.remove_prefix(close + 1);
  }
  return name;
}

/// How many folders these relative paths need, their common top included.
std::int64_t folderCount(const std::vector<std::string>& names) {
  std::set<std::string> folders;
  for (const std::string& name : names) {
    for (std::size_t slash = name.find('/'); slash != std::string::npos;
         slash = name.find('/', slash + 1)) {
      folders.insert(name.substr(0, slash));
    }
  }
  return static_cast<std::int64_t>(folders.size()) + 1;
}

/// Deals `blocks` out to `count` files, at least one to each: some few get much, most get little.
std::vector<std::int64_t> shares(std::int64_t blocks, std::size_t count, Chance& chance) {
  std::vector<double> weights(count);
  for (double& weight : weights) {
    const double x = chance.unit();
    weight = 0.15 + x * x * x;
  }
  const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
  const std::int64_t spare = std::max<std::int64_t>(0, blocks - static_cast<std::int64_t>(count));
  std::vector<std::int64_t> dealt(count);
  double due = 0;
  std::int64_t given = 0;
  for (std::size_t i = 0; i < count; ++i) {
    // By running sums, so that what rounding takes from one goes to the next.
    due += weights[i] / sum * static_cast<double>(spare);
    const std::int64_t extra = static_cast<std::int64_t>(due) - given;
    given += extra;
    dealt[i] = 1 + extra;
  }
  return dealt;
}

}  // namespace

void writePile(TreeWriter& writer, const Pile& pile) {
  const std::string_view content = pile.content.empty() ? pile.folder : pile.content;
  Chance chance(fmt::format("{}|{}", content, pile.pattern));
  std::vector<std::string> names;
  for (int number = 1; number <= pile.files; ++number) {
    names.push_back(fileName(pile.pattern, number, chance));
  }
  const std::int64_t blocks = blocksFor(pile.megabytes) - folderCount(names);
  const std::vector<std::int64_t> dealt = shares(blocks, names.size(), chance);
  for (std::size_t i = 0; i < names.size(); ++i) {
    const auto missing = static_cast<std::int64_t>(chance.below(blockBytes - 96));
    const double age = pile.newestDays + (pile.oldestDays - pile.newestDays) * chance.unit();
    writer.file(fmt::format("{}/{}", pile.folder, names[i]), dealt[i] * blockBytes - missing,
                i == 0 ? pile.newestDays : age, fmt::format("{}/{}", content, names[i]));
  }
}

void writePiles(TreeWriter& writer, std::span<const Pile> piles) {
  for (const Pile& pile : piles) writePile(writer, pile);
}

void writeSingles(TreeWriter& writer, std::span<const Single> singles) {
  for (const Single& single : singles) {
    const std::int64_t blocks = std::max<std::int64_t>(1, blocksFor(single.megabytes));
    const std::string_view content = single.content.empty() ? single.path : single.content;
    const auto missing = static_cast<std::int64_t>(Chance(content).below(blockBytes - 96));
    writer.file(single.path, blocks * blockBytes - missing, single.daysAgo, content);
  }
}

void writeNotes(TreeWriter& writer, std::span<const Note> notes) {
  for (const Note& note : notes) writer.text(note.path, note.text, note.daysAgo);
}

}  // namespace volbrin::demo
