#include <fmt/format.h>

#include <charconv>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "Peers.hpp"
#include "Trees.hpp"

/// Measures `volbrin usage` beside the programs that people would use for it, on trees made for it,
/// all in one run and in turn, warm. Prints medians and ratios.
namespace {

namespace fs = std::filesystem;
using namespace volbrin::bench;

struct Options {
  std::string folder;   ///< where the trees are made, and left for the next run
  std::string program;  ///< the tool
  std::string floor;    ///< the plain loop
  std::size_t files = 400'000;
  std::size_t runs = 7;
};

struct Tree {
  std::string name;
  std::string path;
};

struct Contender {
  std::string name;
  std::vector<std::string> command;  ///< the path is put behind it
};

std::size_t number(std::string_view text) {
  std::size_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || value == 0) {
    throw std::invalid_argument(fmt::format("'{}' is no number above 0", text));
  }
  return value;
}

Options parse(const std::vector<std::string>& words) {
  Options options;
  const auto here = fs::read_symlink("/proc/self/exe").parent_path();
  options.program = (here / "volbrin").string();
  options.floor = (here / "volbrin-floor").string();
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool hasValue = i + 1 < words.size();
    if (words[i] == "--files" && hasValue) {
      options.files = number(words[++i]);
    } else if (words[i] == "--runs" && hasValue) {
      options.runs = number(words[++i]);
    } else if (options.folder.empty() && !words[i].starts_with('-')) {
      options.folder = words[i];
    } else {
      throw std::invalid_argument("usage: volbrin-bench [--files N] [--runs N] FOLDER");
    }
  }
  if (options.folder.empty()) throw std::invalid_argument("name a folder for the trees");
  return options;
}

/// A tree is made once for its size; what a cut-off run left is made anew.
Tree prepare(const Options& options, const std::string& name,
             const std::function<void(const std::string&)>& make) {
  const fs::path path = fs::path(options.folder) / fmt::format("{}-{}", name, options.files);
  const fs::path finished = path.string() + ".made";
  if (!fs::exists(finished)) {
    fmt::print(stderr, "making the {} tree in {}\n", name, path.string());
    fs::create_directories(options.folder);
    fs::remove_all(path);
    make(path.string());
    std::fclose(std::fopen(finished.c_str(), "w"));
  }
  return {name, path.string()};
}

std::vector<Contender> contenders(const Options& options) {
  std::vector<Contender> all = {{"volbrin usage", {options.program, "--quiet", "usage"}},
                                {"plain loop", {options.floor}}};
  for (const auto& peer : {Contender{"du -s", {"du", "-s"}}, Contender{"gdu -npc", {"gdu", "-npc"}},
                           Contender{"ncdu -0", {"ncdu", "-0", "-o", "/dev/null"}}}) {
    if (isInstalled(peer.command.front())) {
      all.push_back(peer);
    } else {
      fmt::print(stderr, "{} is not installed and is left out\n", peer.command.front());
    }
  }
  return all;
}

void measure(const Tree& tree, const std::vector<Contender>& all, std::size_t runs) {
  std::vector<std::vector<Cost>> costs(all.size());
  for (std::size_t round = 0; round <= runs; ++round) {
    for (std::size_t i = 0; i < all.size(); ++i) {
      auto command = all[i].command;
      command.push_back(tree.path);
      const Cost cost = run(command);
      if (round > 0) costs[i].push_back(cost);  // The first round warms the cache.
    }
  }
  const Cost own = median(costs.front());
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Cost cost = median(costs[i]);
    double fastest = cost.seconds;
    double slowest = cost.seconds;
    for (const auto& each : costs[i]) {
      fastest = std::min(fastest, each.seconds);
      slowest = std::max(slowest, each.seconds);
    }
    const double processor = cost.userSeconds + cost.systemSeconds;
    fmt::print(
        "| {} | {} | {:.0f} ms ({:.0f} to {:.0f}) | {:.0f} + {:.0f} ms | {:.1f} MB | {:.2f} "
        "| {:.2f} |{}\n",
        tree.name, all[i].name, cost.seconds * 1000, fastest * 1000, slowest * 1000,
        cost.userSeconds * 1000, cost.systemSeconds * 1000, cost.peakMegabytes,
        cost.seconds / own.seconds, processor / (own.userSeconds + own.systemSeconds),
        cost.succeeded ? "" : " failed");
  }
}

void runAll(const Options& options) {
  const std::vector<Tree> trees = {
      prepare(options, "deep", [&](const auto& path) { makeDeepTree(path, options.files / 4095); }),
      prepare(options, "home", [&](const auto& path) { makeHomeTree(path, options.files); }),
      prepare(options, "wide", [&](const auto& path) { makeWideTree(path, options.files / 20); })};
  const auto all = contenders(options);
  fmt::print(
      "| tree | program | time (spread) | processor: user + system | peak memory | time / "
      "volbrin's | processor / volbrin's |\n|---|---|---|---|---|---|---|\n");
  for (const auto& tree : trees) measure(tree, all, options.runs);
}

}  // namespace

int main(int count, char** words) {
  try {
    runAll(parse({words + 1, words + count}));
    return 0;
  } catch (const std::exception& error) {
    fmt::print(stderr, "volbrin-bench: {}\n", error.what());
    return 1;
  }
}
