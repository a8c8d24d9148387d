#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Catalog.hpp"
#include "Json.hpp"

namespace volbrin {

/// Whether a rule file can be trusted, beyond having the right form.
struct CatalogVerdict {
  bool ok = true;
  std::vector<JsonProblem> problems;
};

/// Reads the rule file at `path` (absent: the one that a scan would load) and looks for what is
/// wrong: with its form, or, when that is right, with what it says. Raises CatalogNotFound and
/// std::system_error for a file that isn't there or can't be read.
[[nodiscard]] CatalogVerdict checkCatalog(const std::optional<std::string>& path);

/// What is wrong with a catalog that has the right form: ids that aren't unique, patterns that
/// match nothing or too much, places that lie in or hold a protected path and so could never be
/// offered, removal for good of what doesn't rebuild itself, actions without what they need,
/// markers that aren't in lower case, empty words, names that two owners claim.
[[nodiscard]] std::vector<JsonProblem> problemsIn(const Catalog& catalog);

template <>
struct RecordFields<JsonProblem> {
  static constexpr auto list =
      std::tuple{field("path", &JsonProblem::path), field("problem", &JsonProblem::problem)};
};

template <>
struct RecordFields<CatalogVerdict> {
  static constexpr auto list =
      std::tuple{field("ok", &CatalogVerdict::ok), field("problems", &CatalogVerdict::problems)};
};

}  // namespace volbrin
