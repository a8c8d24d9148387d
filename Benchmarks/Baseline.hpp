#pragma once

#include <string>
#include <vector>

#include "Table.hpp"

namespace volbrin::bench {

/// The lines of the tables in a document (docs/performance.md), which are as Table prints them.
/// Raises std::runtime_error when the document can't be read or has none.
[[nodiscard]] std::vector<Row> rowsIn(const std::string& document);

/// Prints the lines whose ratio is less than two thirds of that in `documented`, and those that
/// aren't documented; false when there is any.
[[nodiscard]] bool hold(const std::vector<Row>& measured, const std::vector<Row>& documented);

}  // namespace volbrin::bench
