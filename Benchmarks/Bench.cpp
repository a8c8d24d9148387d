#include <fmt/format.h>

#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "Machines.hpp"
#include "Peers.hpp"
#include "Trees.hpp"

/// Measures the tool beside the programs that people would use for the same work, on trees made for
/// it, all in one run and in turn, warm. Prints medians and ratios.
namespace {

namespace fs = std::filesystem;
using namespace volbrin::bench;

struct Options {
  std::string folder;   ///< where the trees are made, and left for the next run
  std::string program;  ///< the tool
  std::string floor;    ///< the plain loop
  std::size_t files = 400'000;
  std::size_t runs = 7;
  std::string only;  ///< the one work that is measured; empty for all
};

/// One work, and who is measured at it.
struct Contender {
  std::string name;
  std::vector<std::string> command;
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
    } else if (words[i] == "--only" && hasValue) {
      options.only = words[++i];
    } else if (options.folder.empty() && !words[i].starts_with('-')) {
      options.folder = words[i];
    } else {
      throw std::invalid_argument(
          "usage: volbrin-bench [--files N] [--runs N] [--only WORK] FOLDER");
    }
  }
  if (options.folder.empty()) throw std::invalid_argument("name a folder for the trees");
  options.folder = fs::absolute(options.folder).lexically_normal().string();
  return options;
}

/// A tree is made once; what a cut-off run left is made anew. Returns its path.
std::string prepare(const Options& options, const std::string& name,
                    const std::function<void(const std::string&)>& make) {
  const fs::path path = fs::path(options.folder) / name;
  const fs::path finished = path.string() + ".made";
  if (!fs::exists(finished)) {
    fmt::print(stderr, "making {}\n", path.string());
    fs::create_directories(options.folder);
    fs::remove_all(path);
    make(path.string());
    std::fclose(std::fopen(finished.c_str(), "w"));
  }
  return path.string();
}

/// Those of `all` that are installed here.
std::vector<Contender> installed(std::vector<Contender> all) {
  std::erase_if(all, [](const Contender& peer) {
    const auto& program = peer.command.front();
    if (program.starts_with('/') || isInstalled(program)) return false;
    fmt::print(stderr, "{} is not installed and is left out\n", program);
    return true;
  });
  return all;
}

/// Reads every file of the trees, so that whoever comes next finds all of it in memory: what
/// another contender left there, or the system took away meanwhile, is then the same for all.
void readAll(const std::vector<std::string>& trees) {
  std::vector<char> piece(1U << 20U);
  for (const auto& tree : trees) {
    for (const auto& entry : fs::recursive_directory_iterator(tree)) {
      if (!entry.is_regular_file()) continue;
      std::ifstream file(entry.path(), std::ios::binary);
      while (file.read(piece.data(), static_cast<std::streamsize>(piece.size()))) {
      }
    }
  }
}

/// Prints a line of the table for each contender; ratios are to the first. `prepareRun` is called
/// before each run and not measured.
void measure(
    const std::string& work, const std::vector<Contender>& all, std::size_t runs,
    const std::function<void()>& prepareRun = [] {}) {
  std::vector<std::vector<Cost>> costs(all.size());
  for (std::size_t round = 0; round <= runs; ++round) {
    for (std::size_t i = 0; i < all.size(); ++i) {
      prepareRun();
      const Cost cost = run(all[i].command);
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
        work, all[i].name, cost.seconds * 1000, fastest * 1000, slowest * 1000,
        cost.userSeconds * 1000, cost.systemSeconds * 1000, cost.peakMegabytes,
        cost.seconds / own.seconds, processor / (own.userSeconds + own.systemSeconds),
        cost.succeeded ? "" : " failed");
  }
}

void measureUsage(const Options& options, const std::string& name, const std::string& tree) {
  measure("usage, " + name,
          installed({{"volbrin usage", {options.program, "--quiet", "usage", tree}},
                     {"plain loop", {options.floor, tree}},
                     {"du -s", {"du", "-s", tree}},
                     {"gdu -npc", {"gdu", "-npc", tree}},
                     {"ncdu -0", {"ncdu", "-0", "-o", "/dev/null", tree}}}),
          options.runs);
}

void measureUsages(const Options& options) {
  const auto named = [&](const char* tree) { return fmt::format("{}-{}", tree, options.files); };
  measureUsage(options, "deep", prepare(options, named("deep"), [&](const auto& path) {
                 makeDeepTree(path, options.files / 4095);
               }));
  measureUsage(options, "home", prepare(options, named("home"), [&](const auto& path) {
                 makeHomeTree(path, options.files);
               }));
  measureUsage(options, "wide", prepare(options, named("wide"), [&](const auto& path) {
                 makeWideTree(path, options.files / 20);
               }));
}

void measureScan(const Options& options) {
  const std::size_t files = options.files * 3 / 4;
  const auto root = prepare(options, fmt::format("machine-{}", files),
                            [&](const auto& path) { makeHomeMachine(path, files); });
  measure("scan",
          {{"volbrin scan", {options.program, "--quiet", "--machine", root, "scan"}},
           {"volbrin usage ~", {options.program, "--quiet", "--machine", root, "usage", "~"}}},
          options.runs);
}

void measureCompare(const Options& options, const std::string& name, std::size_t count,
                    std::size_t bytes) {
  const auto make = [&](const auto& path) { makeFileTree(path, count, bytes); };
  const auto a = prepare(options, name + "-a", make);
  const auto b = prepare(options, name + "-b", make);
  measure("compare, " + name,
          installed({{"volbrin compare --checksums",
                      {options.program, "--quiet", "compare", "--checksums", a, b}},
                     {"diff -rq", {"diff", "-rq", a, b}},
                     {"rclone check --download", {"rclone", "check", "--download", a, b}},
                     {"rsync -rcn", {"rsync", "-rcn", "--delete", a + "/", b + "/"}}}),
          options.runs, [&] {
            readAll({a, b});
          });
}

/// A folder is moved to a drive: copied, synced, proved and put into the Trash. Others copy it,
/// sync the drive and compare.
void measureMove(const Options& options, const std::string& name, std::size_t count,
                 std::size_t bytes) {
  const auto root = prepare(options, "move, " + name,
                            [&](const auto& path) { makeMoveMachine(path, count, bytes); });
  const auto big = root + "/Users/me/Big", trashed = root + "/Users/me/.Trash/Big";
  const auto copy = root + "/Volumes/Backup/Big";
  const auto putBack = [&] {
    fs::remove_all(copy);
    if (fs::exists(trashed)) fs::rename(trashed, big);
    ::sync();
    readAll({big});
  };
  measure(
      "move, " + name,
      {{"volbrin clean",
        {options.program, "--quiet", "--machine", root, "--catalog", root + "/rules.json", "clean",
         "big", "--yes"}},
       {"cp -a, sync -f, diff -rq",
        {"sh", "-c", R"(cp -a "$1" "$2" && sync -f "$2" && diff -rq "$1" "$2")", "sh", big, copy}}},
      options.runs, putBack);
  putBack();
}

void runAll(const Options& options) {
  const std::vector<std::pair<std::string, std::function<void()>>> works = {
      {"usage", [&] { measureUsages(options); }},
      {"scan", [&] { measureScan(options); }},
      {"compare",
       [&] {
         measureCompare(options, "four big files", 4, 1'073'741'824);
         measureCompare(options, "20,000 small files", 20'000, 214'748);
       }},
      {"move", [&] {
         measureMove(options, "four big files", 4, 1'073'741'824);
         measureMove(options, "100,000 small files", 100'000, 4'096);
       }}};
  fmt::print(
      "| work | program | time (spread) | processor: user + system | peak memory | time / "
      "volbrin's | processor / volbrin's |\n|---|---|---|---|---|---|---|\n");
  for (const auto& [name, work] : works) {
    if (options.only.empty() || options.only == name) work();
  }
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
