#pragma once

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "OptionTable.hpp"

namespace volbrin::cli {

/// The command line is wrong; the message says how. Exit status 2.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What a command line says, each option and positional by its name in the table.
class Arguments {
 public:
  /// Reads the words behind the program's name. Raises UsageError for anything that the table
  /// doesn't have, unless help or the version is asked for.
  [[nodiscard]] static Arguments parse(const std::vector<std::string>& words);

  /// Null when only the program itself was named.
  [[nodiscard]] const Command* command() const { return command_; }

  [[nodiscard]] bool has(std::string_view name) const;
  /// The last value given; absent when none was.
  [[nodiscard]] std::optional<std::string> value(std::string_view name) const;
  /// All values given, in their order.
  [[nodiscard]] std::vector<std::string> values(std::string_view name) const;

 private:
  const Command* command_ = nullptr;
  std::map<std::string, std::vector<std::string>, std::less<>> values_;
};

}  // namespace volbrin::cli
