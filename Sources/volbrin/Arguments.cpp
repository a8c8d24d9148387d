#include "Arguments.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <deque>

#include "Text.hpp"

namespace volbrin::cli {
namespace {

/// Where the parser puts what it reads. A deque: the parser keeps references.
struct Slot {
  std::string name;
  std::vector<std::string> values;
  bool isSet = false;
};

void addOption(CLI::App& app, const Option& option, std::deque<Slot>& slots) {
  Slot& slot = slots.emplace_back(Slot{std::string(option.name), {}, false});
  std::string names(option.name);
  if (!option.shortName.empty()) names += "," + std::string(option.shortName);
  if (option.kind == ValueKind::none) {
    app.add_flag(names, slot.isSet);
    return;
  }
  auto* added = app.add_option(names, slot.values)->type_size(1);
  added->multi_option_policy(option.isRepeatable ? CLI::MultiOptionPolicy::TakeAll
                                                 : CLI::MultiOptionPolicy::TakeLast);
  added->allow_extra_args(false);  // or it would swallow the positionals behind it
  if (option.isRequired) added->required();
  if (!option.choices.empty()) {
    added->check(
        CLI::IsMember(std::vector<std::string>(option.choices.begin(), option.choices.end())));
  }
}

void addPositional(CLI::App& app, const Positional& positional, std::deque<Slot>& slots) {
  Slot& slot = slots.emplace_back(Slot{std::string(positional.name), {}, false});
  auto* added = app.add_option(std::string(positional.name), slot.values)->type_size(1);
  added->expected(positional.isRequired ? 1 : 0, positional.isRepeatable ? 1 << 20 : 1);
  if (positional.isRequired) added->required();
  // Or it would take what the next one is for.
  if (positional.isRequired && !positional.isRepeatable) added->allow_extra_args(false);
}

/// The parser of the command `word` below `parent`, made at its first mention.
CLI::App* childOf(CLI::App& parent, const std::string& word) {
  for (auto* child :
       parent.get_subcommands([&](CLI::App* each) { return each->get_name() == word; })) {
    return child;
  }
  return parent.add_subcommand(word, "");
}

/// The parser's message, on one line and without its own decoration.
std::string oneLine(std::string_view message) {
  std::string line;
  for (const auto piece : split(message, '\n')) {
    if (!line.empty()) line += ' ';
    line += trimmed(piece);
  }
  return line;
}

/// The option of that name, of whatever command; null when there is none.
const Option* findOption(std::string_view name) {
  const auto in = [&](const std::vector<Option>& options) {
    const auto found = std::find_if(options.begin(), options.end(),
                                    [&](const Option& each) { return each.name == name; });
    return found == options.end() ? nullptr : &*found;
  };
  if (const auto* option = in(globalOptions())) return option;
  for (const auto& command : commands()) {
    if (const auto* option = in(command.options)) return option;
  }
  return nullptr;
}

/// What the parser would let pass: an option that takes the next option for its value, a flag with
/// a value. A safety that is said must never be lost.
void checkValues(const std::vector<std::string>& words) {
  for (auto word = words.begin(); word != words.end() && *word != "--"; ++word) {
    const auto equals = word->find('=');
    const auto name = word->substr(0, equals);
    const auto* option = findOption(name);
    if (option == nullptr) continue;
    if (equals != std::string::npos) {
      if (option->kind == ValueKind::none) throw UsageError(name + " takes no value");
      if (equals + 1 == word->size()) throw UsageError(name + " has no value behind its '='");
    } else if (option->kind != ValueKind::none) {
      const auto value = word + 1;
      if (value == words.end() || value->starts_with("--") || *value == "-h") {
        throw UsageError(name + " wants a value");
      }
      ++word;
    }
  }
}

}  // namespace

Arguments Arguments::parse(const std::vector<std::string>& words) {
  CLI::App app{std::string(programSummary), std::string(programName)};
  app.set_help_flag();
  app.require_subcommand(0, 1);
  std::deque<Slot> slots;
  for (const auto& option : globalOptions()) addOption(app, option, slots);

  std::map<const CLI::App*, const Command*> known;
  for (const auto& command : commands()) {
    CLI::App* parent = &app;
    for (const auto word : split(command.name, ' ')) {
      parent = childOf(*parent, std::string(word));
      parent->fallthrough();
      parent->set_help_flag();
    }
    for (const auto& positional : command.positionals) addPositional(*parent, positional, slots);
    for (const auto& option : command.options) addOption(*parent, option, slots);
    known.emplace(parent, &command);
  }

  Arguments arguments;
  std::optional<std::string> problem;
  checkValues(words);
  std::vector<std::string> reversed(words.rbegin(), words.rend());
  try {
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& error) {
    problem = oneLine(error.what());
  }
  const CLI::App* named = &app;
  while (!named->get_subcommands().empty()) named = named->get_subcommands().front();
  if (const auto found = known.find(named); found != known.end())
    arguments.command_ = found->second;
  for (auto& slot : slots) {
    if (slot.isSet || !slot.values.empty()) {
      auto& values = arguments.values_[slot.name];
      values.insert(values.end(), slot.values.begin(), slot.values.end());
    }
  }

  // Help and version are told however wrong the rest is.
  const auto options = std::find(words.begin(), words.end(), "--");
  for (const auto& [word, name] : {std::pair{"--help", "--help"}, std::pair{"-h", "--help"},
                                   std::pair{"--version", "--version"}}) {
    if (std::find(words.begin(), options, word) != options) arguments.values_[name];
  }
  if (arguments.has("--help") || arguments.has("--version")) return arguments;
  if (problem) throw UsageError(*problem);
  if (arguments.command_ == nullptr && named != &app) {
    throw UsageError("'" + named->get_name() + "' needs a command after it; see --help");
  }
  return arguments;
}

bool Arguments::has(std::string_view name) const { return values_.contains(name); }

std::optional<std::string> Arguments::value(std::string_view name) const {
  const auto found = values_.find(name);
  if (found == values_.end() || found->second.empty()) return std::nullopt;
  return found->second.back();
}

std::vector<std::string> Arguments::values(std::string_view name) const {
  const auto found = values_.find(name);
  return found == values_.end() ? std::vector<std::string>() : found->second;
}

}  // namespace volbrin::cli
