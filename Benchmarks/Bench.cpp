#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <stdexcept>

#include "Baseline.hpp"
#include "Works.hpp"

/// Measures the tool beside the programs that people would use for the same work, on trees made for
/// it, all in one run and in turn. Prints medians and ratios.
namespace {

namespace fs = std::filesystem;
using namespace volbrin::bench;

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
  options.programs = fs::read_symlink("/proc/self/exe").parent_path().string();
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool hasValue = i + 1 < words.size();
    if (words[i] == "--files" && hasValue) {
      options.files = number(words[++i]);
    } else if (words[i] == "--runs" && hasValue) {
      options.runs = number(words[++i]);
    } else if (words[i] == "--only" && hasValue) {
      options.only = words[++i];
    } else if (words[i] == "--check" && hasValue) {
      options.baseline = words[++i];
    } else if (options.folder.empty() && !words[i].starts_with('-')) {
      options.folder = fs::absolute(words[i]).lexically_normal().string();
    } else {
      throw std::invalid_argument(
          "usage: volbrin-bench [--files N] [--runs N] [--only WORK] [--check DOCUMENT] FOLDER");
    }
  }
  if (options.folder.empty()) throw std::invalid_argument("name a folder for the trees");
  return options;
}

/// Whether all went well, and as documented where that was asked.
bool measureAll(const Options& options) {
  const auto& works = allWorks();
  const auto isWanted = [&](const Work& work) {
    return options.only.empty() ? !work.onlyWhenAsked : work.name == options.only;
  };
  if (std::none_of(works.begin(), works.end(), isWanted)) {
    throw std::invalid_argument(fmt::format("'{}' is no work", options.only));
  }
  const auto documented = options.baseline.empty() ? std::vector<Row>() : rowsIn(options.baseline);
  Table table(options.runs);
  for (const auto& work : works) {
    if (isWanted(work)) work.run(options, table);
  }
  const bool holds = options.baseline.empty() || hold(table.rows(), documented);
  return table.haveAllSucceeded() && holds;
}

}  // namespace

int main(int count, char** words) {
  try {
    return measureAll(parse({words + 1, words + count})) ? 0 : 1;
  } catch (const std::exception& error) {
    fmt::print(stderr, "volbrin-bench: {}\n", error.what());
    return 1;
  }
}
