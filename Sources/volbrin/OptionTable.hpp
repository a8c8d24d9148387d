#pragma once

#include <string_view>
#include <vector>

/// Everything that the command line can say, once: the parser, the help, the manual page and the
/// completions of all shells are made from this table.
namespace volbrin::cli {

/// What a value stands for; completions offer files for paths.
enum class ValueKind { none, text, file, folder, machinePath, choice };

struct Option {
  std::string_view name;             ///< with its dashes: "--machine"
  std::string_view shortName;        ///< "-h"; empty for none
  ValueKind kind = ValueKind::none;  ///< `none` for a flag
  std::string_view value;            ///< what the help calls the value: "DIR"
  std::string_view help;
  std::vector<std::string_view> choices = {};  ///< of a `choice`
  bool isRepeatable = false;
  bool isRequired = false;
};

struct Positional {
  std::string_view name;  ///< "PATH"
  ValueKind kind = ValueKind::text;
  std::string_view help;
  bool isRequired = true;
  bool isRepeatable = false;
};

struct Example {
  std::string_view line;
  std::string_view meaning;
};

struct Command {
  std::string_view name;  ///< "scan"; "catalog check" for a command in a group
  std::string_view summary;
  std::string_view description;
  std::vector<Positional> positionals;
  std::vector<Option> options;  ///< beside the global ones
  std::vector<Example> examples;
};

inline constexpr std::string_view programName = "volbrin";
inline constexpr std::string_view programSummary = "find and free disk space, carefully";

[[nodiscard]] const std::vector<Option>& globalOptions();
[[nodiscard]] const std::vector<Command>& commands();
/// The command of that name; null when there is none.
[[nodiscard]] const Command* findCommand(std::string_view name);

}  // namespace volbrin::cli
