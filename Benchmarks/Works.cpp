#include "Works.hpp"

#include <fmt/format.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "Machines.hpp"
#include "Trees.hpp"

namespace volbrin::bench {
namespace {

namespace fs = std::filesystem;

std::string tool(const Options& options) { return options.programs + "/volbrin"; }

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
    std::ofstream(finished) << name;
  }
  return path.string();
}

std::string homeMachine(const Options& options, std::size_t files) {
  return prepare(options, fmt::format("machine-{}", files),
                 [&](const auto& path) { makeHomeMachine(path, files); });
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

/// Has the system forget all that it keeps in memory of files and folders (proc(5), drop_caches);
/// false where that isn't ours to do.
bool forgetAll() {
  ::sync();
  std::ofstream file("/proc/sys/vm/drop_caches");
  file << '3' << std::flush;
  return static_cast<bool>(file);
}

struct NamedTree {
  std::string name, path;
};

std::vector<NamedTree> usageTrees(const Options& options) {
  const auto made = [&](const char* tree, const std::function<void(const std::string&)>& make) {
    return NamedTree{tree, prepare(options, fmt::format("{}-{}", tree, options.files), make)};
  };
  const auto files = options.files;
  return {made("deep", [&](const auto& path) { makeDeepTree(path, files / 4095); }),
          made("home", [&](const auto& path) { makeHomeTree(path, files); }),
          made("wide", [&](const auto& path) { makeWideTree(path, files / 20); })};
}

std::vector<Contender> measurers(const Options& options, const std::string& tree) {
  return installed({{"volbrin usage", {tool(options), "--quiet", "usage", tree}},
                    {"plain loop", {options.programs + "/volbrin-floor", tree}},
                    {"du -s", {"du", "-s", tree}},
                    {"gdu -npc", {"gdu", "-npc", tree}},
                    {"ncdu -0", {"ncdu", "-0", "-o", "/dev/null", tree}},
                    {"duc index", {"duc", "index", "-d", options.folder + "/duc.db", tree}}});
}

void measureUsage(const Options& options, Table& table) {
  for (const auto& [name, path] : usageTrees(options)) {
    table.measure("usage, " + name, measurers(options, path));
  }
}

void measureColdUsage(const Options& options, Table& table) {
  if (!forgetAll()) {
    fmt::print(stderr, "only root can measure with nothing in memory; left out\n");
    return;
  }
  for (const auto& [name, path] : usageTrees(options)) {
    table.measure("usage, " + name + ", cold", measurers(options, path), [] { forgetAll(); });
  }
}

void measureScan(const Options& options, Table& table) {
  const auto root = homeMachine(options, options.files * 3 / 4);
  const std::vector<std::string> onIt = {tool(options), "--quiet", "--machine", root};
  const auto command = [&](std::vector<std::string> words) {
    words.insert(words.begin(), onIt.begin(), onIt.end());
    return words;
  };
  table.measure(
      "scan", {{"volbrin scan", command({"scan"})}, {"volbrin usage ~", command({"usage", "~"})}});
}

void measureGrowth(const Options& options, Table& table) {
  for (const std::size_t files : {3'000'000U, 1'000'000U, 300'000U, 100'000U, 30'000U, 10'000U}) {
    const auto root = homeMachine(options, files);
    table.measure(fmt::format("scan of {} files", files),
                  {{"volbrin scan", {tool(options), "--quiet", "--machine", root, "scan"}},
                   {"du -s", {"du", "-s", root + "/Users"}}});
  }
}

void compareTwo(const Options& options, Table& table, const std::string& name, std::size_t count,
                std::size_t bytes) {
  const auto make = [&](const auto& path) { makeFileTree(path, count, bytes); };
  const auto a = prepare(options, name + "-a", make);
  const auto b = prepare(options, name + "-b", make);
  table.measure("compare, " + name,
                installed({{"volbrin compare --checksums",
                            {tool(options), "--quiet", "compare", "--checksums", a, b}},
                           {"diff -rq", {"diff", "-rq", a, b}},
                           {"rclone check --download", {"rclone", "check", "--download", a, b}},
                           {"rsync -rcn", {"rsync", "-rcn", "--delete", a + "/", b + "/"}}}),
                [&] {
                  readAll({a, b});
                });
}

void measureCompare(const Options& options, Table& table) {
  compareTwo(options, table, "four big files", 4, 1'073'741'824);
  compareTwo(options, table, "20,000 small files", 20'000, 214'748);
}

/// A folder is moved to a drive: copied, synced, proved and put into the Trash. Others copy it,
/// sync the drive and compare.
void moveOne(const Options& options, Table& table, const std::string& name, std::size_t count,
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
  table.measure(
      "move, " + name,
      {{"volbrin clean",
        {tool(options), "--quiet", "--machine", root, "--catalog", root + "/rules.json", "clean",
         "big", "--yes"}},
       {"cp -a, sync -f, diff -rq",
        {"sh", "-c", R"(cp -a "$1" "$2" && sync -f "$2" && diff -rq "$1" "$2")", "sh", big, copy}}},
      putBack);
  putBack();
}

void measureMove(const Options& options, Table& table) {
  moveOne(options, table, "four big files", 4, 1'073'741'824);
  moveOne(options, table, "100,000 small files", 100'000, 4'096);
}

void measureCloud(const Options& options, Table& table) {
  const auto files = options.files * 5 / 2;
  const auto root = prepare(options, fmt::format("cloud-{}", files),
                            [&](const auto& path) { makeCloudMachine(path, files); });
  const auto home = root + "/Users/me";
  const auto least = std::to_string(bigCloudFileBytes);
  table.measure(
      "copies in iCloud Drive",
      installed(
          {{"volbrin icloud scan",
            {tool(options), "--quiet", "--machine", root, "icloud", "scan", "--min-bytes", least}},
           {"volbrin usage", {tool(options), "--quiet", "usage", home}},
           {"rmlint -b", {"rmlint", "-T", "df", "-b", "-s", least, "-o", "json:stdout", home}},
           {"rdfind",
            {"rdfind", "-dryrun", "true", "-makeresultsfile", "false", "-minsize", least, home}}}));
}

void measureStart(const Options& options, Table& table) {
  const auto root = prepare(options, "history", makeHistoryMachine);
  table.measure(
      "start",
      installed({{"volbrin status", {tool(options), "--quiet", "--machine", root, "status"}},
                 {"gdu --version", {"gdu", "--version"}},
                 {"rclone version", {"rclone", "version"}}}));
}

/// How the time grows with the number of findings: by design as fast as that number.
void measurePlan(const Options& options, Table& table) {
  const auto plan = [&](const char* findings) {
    return std::vector<std::string>{options.programs + "/volbrin-plan", findings};
  };
  table.measure("plan", {{"100,000 findings", plan("100000")}, {"50,000 findings", plan("50000")}});
}

void measureHistory(const Options& options, Table& table) {
  const auto root = prepare(options, "history", makeHistoryMachine);
  table.measure(
      "history of 100,000 lines",
      installed({{"volbrin history", {tool(options), "--quiet", "--machine", root, "history"}},
                 {"jq -c", {"jq", "-c", "[.at, .title, .bytes]", historyIn(root)}}}));
}

}  // namespace

const std::vector<Work>& allWorks() {
  static const std::vector<Work> works = {
      {"usage", measureUsage},        {"cold", measureColdUsage},  {"scan", measureScan},
      {"compare", measureCompare},    {"icloud", measureCloud},    {"start", measureStart},
      {"plan", measurePlan},          {"history", measureHistory}, {"move", measureMove},
      {"growth", measureGrowth, true}};
  return works;
}

}  // namespace volbrin::bench
