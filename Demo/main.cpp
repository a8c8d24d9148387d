#include <fmt/format.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Dates.hpp"
#include "DemoFolder.hpp"
#include "Failure.hpp"
#include "Machine.hpp"
#include "Scale.hpp"
#include "TreeWriter.hpp"

namespace {

using namespace volbrin::demo;

constexpr std::string_view usageText =
    "usage: volbrin-demo [--now DATE] [--replace] DIR\n"
    "\n"
    "Makes a demo machine in DIR: a believable fake Mac of some years' use, small on disk.\n"
    "\n"
    "  --now DATE  the machine's present, \"2026-03-01\" or \"2026-03-01T09:30:00Z\";\n"
    "              the same date gives the same machine. Default: the present moment\n"
    "  --replace   remove the demo machine that already stands in DIR, then make it anew\n"
    "  --help      print this text\n";

struct Options {
  std::string folder;
  Seconds now = 0;
  Earlier earlier = Earlier::keep;
  bool help = false;
};

Seconds present() {
  return std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now())
      .time_since_epoch()
      .count();
}

Seconds readNow(std::string_view text) {
  if (const auto moment = parseMoment(text)) return *moment;
  throw UsageError(
      fmt::format("\"{}\" is no date; write 2026-03-01 or 2026-03-01T09:30:00Z", text));
}

Options readOptions(std::span<char*> arguments) {
  Options options{.folder = {}, .now = present()};
  std::optional<std::string> folder;
  bool onlyFolders = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string_view argument = arguments[i];
    if (onlyFolders || !argument.starts_with("-")) {
      if (folder) throw UsageError("more than one DIR; see volbrin-demo --help");
      folder = argument;
    } else if (argument == "--") {
      onlyFolders = true;
    } else if (argument == "--help" || argument == "-h") {
      options.help = true;
    } else if (argument == "--replace") {
      options.earlier = Earlier::replace;
    } else if (argument == "--now") {
      if (++i == arguments.size()) throw UsageError("--now needs a date");
      options.now = readNow(arguments[i]);
    } else if (argument.starts_with("--now=")) {
      options.now = readNow(argument.substr(std::string_view("--now=").size()));
    } else {
      throw UsageError(fmt::format("unknown option {}; see volbrin-demo --help", argument));
    }
  }
  if (options.help) return options;
  if (!folder || folder->empty()) throw UsageError("no DIR given; see volbrin-demo --help");
  options.folder = *folder;
  return options;
}

void run(const Options& options) {
  // The machine is the same whoever makes it.
  ::umask(022);
  const DemoFolder folder = DemoFolder::claim(options.folder, options.earlier);
  TreeWriter writer(folder.handle(), options.now);
  makeMachine(writer);
  folder.dateMarker(options.now);
  writer.finish();
  const Totals& totals = writer.totals();
  fmt::print(
      "Made a demo machine in {}: {} files, {} folders, {:.0f} MB on disk, where each byte "
      "stands for {:.0f}.\n",
      options.folder, totals.files, totals.folders,
      static_cast<double>(totals.allocatedBytes) / 1e6, sizeScale);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const Options options = readOptions({argv + 1, argv + std::max(argc, 1)});
    if (options.help) {
      fmt::print("{}", usageText);
    } else {
      run(options);
    }
    return 0;
  } catch (const UsageError& error) {
    fmt::print(stderr, "volbrin-demo: {}\n", error.what());
    return 2;
  } catch (const std::exception& error) {
    fmt::print(stderr, "volbrin-demo: {}\n", error.what());
    return 1;
  }
}
