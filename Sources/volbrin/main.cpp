#include <fmt/format.h>

#include <exception>

#include "Commands.hpp"
#include "Help.hpp"
#include "Model.hpp"

namespace {

using namespace volbrin;
using namespace volbrin::cli;

ExitStatus run(const Arguments& arguments) {
  Session session(arguments);
  const auto* command = arguments.command();
  if (arguments.has("--help")) {
    session.output().text(command != nullptr ? commandHelp(*command) : programHelp());
    return ExitStatus::done;
  }
  if (arguments.has("--version")) {
    session.output().text(fmt::format("{} {}\n", programName, Engine::version));
    return ExitStatus::done;
  }
  if (command == nullptr) throw UsageError("name a command; see volbrin --help");
  return functionOf(command->name)(session);
}

ExitStatus runReporting(const std::vector<std::string>& words) {
  try {
    return run(Arguments::parse(words));
  } catch (const UsageError& error) {
    printError(error.what());
    return ExitStatus::usage;
  } catch (const std::exception& error) {
    printError(error.what());
    return ExitStatus::unloadable;
  }
}

}  // namespace

int main(int count, char** words) {
  return static_cast<int>(runReporting({words + 1, words + count}));
}
