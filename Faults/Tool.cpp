#include "Tool.hpp"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

#include "Descriptor.hpp"

namespace volbrin::faults {

Ending runTool(std::vector<std::string> words,
               const std::map<std::string, std::string>& environment) {
  words.insert(words.begin(), VOLBRIN_PROGRAM);
  std::vector<std::string> variables = {"LC_ALL=C", "PATH=/usr/bin:/bin"};
  for (const auto& [name, value] : environment) variables.push_back(name + "=" + value);
  std::vector<char*> arguments, settings;
  for (auto& word : words) arguments.push_back(word.data());
  for (auto& variable : variables) settings.push_back(variable.data());
  arguments.push_back(nullptr);
  settings.push_back(nullptr);

  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return {};
  Descriptor reading(ends[0]), writing(ends[1]);
  const pid_t child = ::fork();
  if (child == 0) {
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    ::dup2(nothing, STDIN_FILENO);
    ::dup2(nothing, STDERR_FILENO);
    ::dup2(writing.get(), STDOUT_FILENO);
    ::execve(arguments.front(), arguments.data(), settings.data());
    ::_exit(127);
  }
  writing.close();
  Ending ending;
  std::array<char, 4096> piece{};
  for (ssize_t count = 0; (count = ::read(reading.get(), piece.data(), piece.size())) > 0;) {
    ending.out.append(piece.data(), static_cast<std::size_t>(count));
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  if (WIFEXITED(status)) ending.status = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) ending.signal = WTERMSIG(status);
  return ending;
}

}  // namespace volbrin::faults
