#pragma once

#include <string>

#include "OptionTable.hpp"

/// Texts made from the option table.
namespace volbrin::cli {

/// How the program is used, examples first.
[[nodiscard]] std::string programHelp();
/// How one command is used, examples first.
[[nodiscard]] std::string commandHelp(const Command& command);
/// "usage PATH... [options]", without the program's name.
[[nodiscard]] std::string synopsis(const Command& command);

}  // namespace volbrin::cli
