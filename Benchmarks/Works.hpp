#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "Table.hpp"

/// What is measured, and beside whom.
namespace volbrin::bench {

struct Options {
  std::string folder;    ///< where the trees are made, and left for the next run; absolute
  std::string programs;  ///< where the built programs are
  std::size_t files = 400'000;
  std::size_t runs = 7;
  std::string only;  ///< the one work that is measured; empty for all but those that are asked for
  std::string baseline;  ///< the document whose ratios must hold; empty for none
};

struct Work {
  std::string name;
  std::function<void(const Options&, Table&)> run;
  bool onlyWhenAsked = false;  ///< takes very long
};

[[nodiscard]] const std::vector<Work>& allWorks();

}  // namespace volbrin::bench
