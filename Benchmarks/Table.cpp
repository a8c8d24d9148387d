#include "Table.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cstdio>

namespace volbrin::bench {
namespace {

std::string lineOf(const std::string& work, const std::string& program,
                   const std::vector<Cost>& costs, double ratio) {
  const auto [fastest, slowest] =
      std::minmax_element(costs.begin(), costs.end(),
                          [](const Cost& a, const Cost& b) { return a.seconds < b.seconds; });
  const Cost cost = median(costs);
  return fmt::format(
      "| {} | {} | {:.0f} ms ({:.0f} to {:.0f}) | {:.0f} + {:.0f} ms | {:.1f} MB | {:.2f} |{}",
      work, program, cost.seconds * 1000, fastest->seconds * 1000, slowest->seconds * 1000,
      cost.userSeconds * 1000, cost.systemSeconds * 1000, cost.peakMegabytes, ratio,
      cost.succeeded ? "" : " failed");
}

}  // namespace

std::vector<Contender> installed(std::vector<Contender> all) {
  std::erase_if(all, [](const Contender& peer) {
    const auto& program = peer.command.front();
    if (program.starts_with('/') || isInstalled(program)) return false;
    fmt::print(stderr, "{} is not installed and is left out\n", program);
    return true;
  });
  return all;
}

void Table::printHead() {
  if (!rows_.empty()) return;
  fmt::print(
      "| work | program | time (spread) | processor: user + system | peak memory | time / "
      "volbrin's |\n|---|---|---|---|---|---|\n");
}

void Table::measure(const std::string& work, const std::vector<Contender>& all,
                    const std::function<void()>& prepareRun) {
  std::vector<std::vector<Cost>> costs(all.size());
  for (std::size_t round = 0; round <= runs_; ++round) {
    for (std::size_t i = 0; i < all.size(); ++i) {
      prepareRun();
      const Cost cost = run(all[i].command);
      if (round > 0) costs[i].push_back(cost);
    }
  }
  printHead();
  const double own = median(costs.front()).seconds;
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Cost cost = median(costs[i]);
    haveAllSucceeded_ = haveAllSucceeded_ && cost.succeeded;
    rows_.push_back({work, all[i].name, cost.seconds / own});
    fmt::print("{}\n", lineOf(work, all[i].name, costs[i], rows_.back().ratio));
  }
  std::fflush(stdout);
}

}  // namespace volbrin::bench
