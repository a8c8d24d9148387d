#include "Completions.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <vector>

#include "OptionTable.hpp"
#include "Text.hpp"

namespace volbrin::cli {
namespace {

using fmt::format;

bool wantsFiles(ValueKind kind) {
  return kind == ValueKind::file || kind == ValueKind::folder || kind == ValueKind::machinePath;
}

/// `text` for single quotes in a shell.
std::string quotable(std::string_view text) {
  std::string result;
  for (const char c : text) result += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return result;
}

/// The first words of all commands, each once, and what can follow them.
struct FirstWord {
  std::string word;
  std::string summary;
  std::vector<std::string> seconds = {};
  std::vector<Option> options = {};          ///< of all commands that begin so, each once
  std::vector<Positional> positionals = {};  ///< of the first of them
};

void addMissing(std::vector<Option>& all, const std::vector<Option>& more) {
  for (const auto& option : more) {
    const bool isKnown = std::any_of(
        all.begin(), all.end(), [&](const Option& known) { return known.name == option.name; });
    if (!isKnown) all.push_back(option);
  }
}

std::vector<FirstWord> firstWords() {
  std::vector<FirstWord> words;
  for (const auto& command : commands()) {
    const auto parts = split(command.name, ' ');
    const bool isNew = words.empty() || words.back().word != parts.front();
    if (isNew) {
      words.push_back({std::string(parts.front()), std::string(command.summary)});
      words.back().positionals = command.positionals;
    }
    if (parts.size() > 1) words.back().seconds.emplace_back(parts[1]);
    addMissing(words.back().options, command.options);
  }
  return words;
}

std::string wordList(const std::vector<FirstWord>& words) {
  std::string text;
  for (const auto& word : words) text += (text.empty() ? "" : " ") + word.word;
  return text;
}

std::string optionNames(const std::vector<Option>& options) {
  std::string text;
  for (const auto& option : options) text += " " + std::string(option.name);
  return text;
}

std::string bashValueCase(const Option& option) {
  if (!option.choices.empty()) {
    return format("    {})\n      COMPREPLY=($(compgen -W '{}' -- \"$word\"))\n      return ;;\n",
                  option.name, joined(option.choices, " "));
  }
  const bool files = wantsFiles(option.kind);
  return format("    {})\n      {}\n      return ;;\n", option.name,
                files ? "compopt -o filenames; COMPREPLY=($(compgen -f -- \"$word\"))" : ":");
}

/// All options, those of several commands once.
std::vector<Option> everyOption() {
  std::vector<Option> all = globalOptions();
  for (const auto& command : commands()) addMissing(all, command.options);
  return all;
}

}  // namespace

std::string bashCompletion() {
  std::string values;
  for (const auto& option : everyOption()) {
    if (option.kind != ValueKind::none) values += bashValueCase(option);
  }
  std::string perCommand;
  for (const auto& word : firstWords()) {
    perCommand +=
        format("    {}) options=\"$options{}\" ;;\n", word.word, optionNames(word.options));
  }
  std::string seconds;
  for (const auto& word : firstWords()) {
    if (!word.seconds.empty()) {
      seconds += format("    {}) COMPREPLY+=($(compgen -W '{}' -- \"$word\")) ;;\n", word.word,
                        joined(word.seconds, " "));
    }
  }
  return format(R"(# bash completion for volbrin
_volbrin() {{
  local word="${{COMP_WORDS[COMP_CWORD]}}" before="${{COMP_WORDS[COMP_CWORD-1]}}" command="" at
  local options="{}"
  COMPREPLY=()
  case "$before" in
{}  esac
  for ((at = 1; at < COMP_CWORD; at++)); do
    case " {} " in
      *" ${{COMP_WORDS[at]}} "*) command="${{COMP_WORDS[at]}}"; break ;;
    esac
  done
  case "$command" in
{}  esac
  if [[ "$word" == -* ]]; then
    COMPREPLY=($(compgen -W "$options" -- "$word"))
  elif [[ -z "$command" ]]; then
    COMPREPLY=($(compgen -W '{}' -- "$word"))
  else
    compopt -o filenames
    COMPREPLY=($(compgen -f -- "$word"))
    case "$command" in
{}      *) ;;
    esac
  fi
}}
complete -F _volbrin volbrin
)",
                optionNames(globalOptions()).substr(1), values, wordList(firstWords()), perCommand,
                wordList(firstWords()), seconds);
}

namespace {

/// An argument of zsh's _arguments: "--name[help]:value:action".
std::string zshOption(const Option& option) {
  std::string help;
  for (const char c : quotable(option.help)) {
    if (c == '[' || c == ']' || c == ':') help += '\\';
    help += c;
  }
  std::string spec = format("{}{}[{}]", option.isRepeatable ? "*" : "", option.name, help);
  if (option.kind == ValueKind::none) return format("'{}'", spec);
  spec += format(":{}:", option.value);
  if (!option.choices.empty()) spec += format("({})", joined(option.choices, " "));
  if (wantsFiles(option.kind)) spec += option.kind == ValueKind::folder ? "_files -/" : "_files";
  return format("'{}'", spec);
}

std::string zshOptions(const std::vector<Option>& options) {
  std::string text;
  for (const auto& option : options) text += format(" \\\n        {}", zshOption(option));
  return text;
}

}  // namespace

std::string zshCompletion() {
  std::string words;
  for (const auto& word : firstWords()) {
    words += format("    '{}:{}'\n", word.word, quotable(word.summary));
  }
  std::string cases;
  for (const auto& word : firstWords()) {
    std::string rest;
    if (!word.seconds.empty()) {
      rest += format(" \\\n        '1:command:({})'", joined(word.seconds, " "));
    }
    for (const auto& positional : word.positionals) {
      const bool files = wantsFiles(positional.kind);
      rest += format(" \\\n        '*:{}:{}'", positional.name, files ? "_files" : "");
    }
    cases += format("    {})\n      _arguments{}{}{} ;;\n", word.word, zshOptions(globalOptions()),
                    zshOptions(word.options), rest);
  }
  return format(R"(#compdef volbrin
_volbrin() {{
  local -a words_of_volbrin=(
{}  )
  local context state line
  _arguments -C{} \
        '1:command:->command' '*::argument:->argument'
  case "$state" in
    command) _describe command words_of_volbrin ;;
    argument)
  case "$line[1]" in
{}  esac ;;
  esac
}}
_volbrin "$@"
)",
                words, zshOptions(globalOptions()), cases);
}

std::string fishCompletion() {
  const auto optionLine = [](const Option& option, const std::string& condition) {
    std::string line = "complete -c volbrin" + condition;
    line += format(" -l {}", option.name.substr(2));
    if (!option.shortName.empty()) line += format(" -s {}", option.shortName.substr(1));
    if (option.kind != ValueKind::none) line += " -r";
    if (!option.choices.empty()) line += format(" -f -a '{}'", joined(option.choices, " "));
    if (option.kind == ValueKind::text) line += " -f";
    return line + format(" -d '{}'\n", quotable(option.help));
  };
  std::string text = "# fish completion for volbrin\n";
  const std::string words = wordList(firstWords());
  for (const auto& word : firstWords()) {
    text += format("complete -c volbrin -n 'not __fish_seen_subcommand_from {}' -f -a {} -d '{}'\n",
                   words, word.word, quotable(word.summary));
    for (const auto& second : word.seconds) {
      text += format("complete -c volbrin -n '__fish_seen_subcommand_from {}' -a {}\n", word.word,
                     second);
    }
  }
  for (const auto& option : globalOptions()) text += optionLine(option, "");
  for (const auto& word : firstWords()) {
    for (const auto& option : word.options) {
      text += optionLine(option, format(" -n '__fish_seen_subcommand_from {}'", word.word));
    }
  }
  return text;
}

}  // namespace volbrin::cli
