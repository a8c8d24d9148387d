#pragma once

#include <string>

/// Completions for each shell, made from the option table.
namespace volbrin::cli {

[[nodiscard]] std::string bashCompletion();
[[nodiscard]] std::string zshCompletion();
[[nodiscard]] std::string fishCompletion();

}  // namespace volbrin::cli
