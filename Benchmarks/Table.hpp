#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Peers.hpp"

/// Measuring contenders in turn, and the table of what they cost.
namespace volbrin::bench {

/// Who is measured at a work.
struct Contender {
  std::string name;
  std::vector<std::string> command;
};

/// Those of `all` that are installed here.
[[nodiscard]] std::vector<Contender> installed(std::vector<Contender> all);

/// A line of the table.
struct Row {
  std::string work;
  std::string program;
  double ratio;  ///< its time, in that of the work's first contender
};

/// Prints lines as they are measured, and keeps them.
class Table {
 public:
  explicit Table(std::size_t runs) : runs_(runs) {}

  /// Runs every contender `runs` times, in turn, so that what disturbs one disturbs all, and prints
  /// a line for each with the medians and the fastest and the slowest run. A first round, which
  /// warms what the system keeps in memory, isn't counted. `prepareRun` is called before each run
  /// and not measured.
  void measure(
      const std::string& work, const std::vector<Contender>& all,
      const std::function<void()>& prepareRun = [] {});

  [[nodiscard]] const std::vector<Row>& rows() const { return rows_; }
  /// Whether every run of every contender succeeded.
  [[nodiscard]] bool haveAllSucceeded() const { return haveAllSucceeded_; }

 private:
  void printHead();

  std::size_t runs_;
  std::vector<Row> rows_;
  bool haveAllSucceeded_ = true;
};

}  // namespace volbrin::bench
