#include "Baseline.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <optional>
#include <stdexcept>

#include "Text.hpp"

namespace volbrin::bench {
namespace {

/// Noise moves a ratio by a fifth at most; a fall below this is the program's own doing.
constexpr double leastShare = 2.0 / 3;

std::string trimmed(std::string_view cell) {
  const auto first = cell.find_first_not_of(' ');
  const auto last = cell.find_last_not_of(' ');
  return first == std::string_view::npos ? "" : std::string(cell.substr(first, last - first + 1));
}

std::optional<Row> rowOf(std::string_view line) {
  const auto cells = split(line, '|');
  if (cells.size() < 6) return std::nullopt;
  const auto text = trimmed(cells[5]);
  double ratio = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), ratio);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return Row{trimmed(cells[0]), trimmed(cells[1]), ratio};
}

}  // namespace

std::vector<Row> rowsIn(const std::string& document) {
  std::ifstream file(document);
  std::vector<Row> rows;
  for (std::string line; std::getline(file, line);) {
    if (auto row = rowOf(line)) rows.push_back(std::move(*row));
  }
  if (rows.empty()) throw std::runtime_error(document + " has no table of ratios");
  return rows;
}

bool hold(const std::vector<Row>& measured, const std::vector<Row>& documented) {
  bool allHold = true;
  for (const auto& row : measured) {
    const auto found = std::find_if(documented.begin(), documented.end(), [&](const Row& each) {
      return each.work == row.work && each.program == row.program;
    });
    const bool isKnown = found != documented.end();
    if (isKnown && row.ratio >= found->ratio * leastShare) continue;
    allHold = false;
    fmt::print("{}, {}: {:.2f}, {}\n", row.work, row.program, row.ratio,
               isKnown ? fmt::format("documented as {:.2f}", found->ratio) : "not documented");
  }
  return allHold;
}

}  // namespace volbrin::bench
