#include "Help.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "Text.hpp"

namespace volbrin::cli {
namespace {

using fmt::format;

constexpr std::size_t lineWidth = 80;

/// `text` broken into lines that end before `lineWidth`, each behind `indent` blanks but the first.
std::string wrapped(std::string_view text, std::size_t indent) {
  std::string result;
  std::size_t column = indent;
  for (const auto word : split(text, ' ')) {
    if (column > indent && column + 1 + word.size() > lineWidth) {
      result += "\n" + std::string(indent, ' ');
      column = indent;
    } else if (column > indent) {
      result += ' ';
      ++column;
    }
    result += word;
    column += word.size();
  }
  return result;
}

std::string exampleLines(const std::vector<Example>& examples) {
  std::size_t width = 0;
  for (const auto& example : examples) width = std::max(width, example.line.size());
  std::string text = "Examples:\n";
  for (const auto& example : examples) {
    text += format("  {:<{}}  {}\n", example.line, width, example.meaning);
  }
  return text;
}

std::string optionName(const Option& option) {
  std::string name;
  if (!option.shortName.empty()) name = format("{}, ", option.shortName);
  name += option.name;
  if (option.kind != ValueKind::none) name += format(" {}", option.value);
  return name;
}

constexpr std::size_t helpColumn = 28;

std::string entry(const std::string& name, std::string_view help) {
  std::string line = "  " + name;
  if (line.size() + 2 > helpColumn) {
    line += "\n" + std::string(helpColumn, ' ');
  } else {
    line.resize(helpColumn, ' ');
  }
  return line + wrapped(help, helpColumn) + "\n";
}

std::string optionLines(std::string_view heading, const std::vector<Option>& options) {
  if (options.empty()) return "";
  std::string text = format("\n{}:\n", heading);
  for (const auto& option : options) text += entry(optionName(option), option.help);
  return text;
}

}  // namespace

std::string synopsis(const Command& command) {
  std::string text(command.name);
  for (const auto& positional : command.positionals) {
    const auto name = format("{}{}", positional.name, positional.isRepeatable ? "..." : "");
    text += positional.isRequired ? " " + name : " [" + name + "]";
  }
  for (const auto& option : command.options) {
    if (option.isRequired) text += " " + optionName(option);
  }
  return text + " [options]";
}

std::string programHelp() {
  std::vector<Example> first;
  for (const auto& command : commands()) {
    if (!command.examples.empty()) first.push_back(command.examples.front());
  }
  std::string text = format("{} - {}\n\n", programName, programSummary);
  text += exampleLines(first);
  text += format("\nUsage: {} [options] COMMAND ...\n\nCommands:\n", programName);
  for (const auto& command : commands()) text += entry(std::string(command.name), command.summary);
  text += optionLines("Options, before or after the command", globalOptions());
  return text + format("\n'{} COMMAND --help' tells of one command.\n", programName);
}

std::string commandHelp(const Command& command) {
  std::string text = format("{} {} - {}\n\n", programName, command.name, command.summary);
  text += exampleLines(command.examples);
  text += format("\nUsage: {} {}\n\n{}\n", programName, synopsis(command),
                 wrapped(command.description, 0));
  if (!command.positionals.empty()) {
    text += "\n";
    for (const auto& positional : command.positionals) {
      text += entry(std::string(positional.name), positional.help);
    }
  }
  text += optionLines("Options", command.options);
  return text + optionLines("Options of every command", globalOptions());
}

}  // namespace volbrin::cli
