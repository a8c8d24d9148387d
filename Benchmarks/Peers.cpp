#include "Peers.hpp"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace volbrin::bench {
namespace {

double seconds(const timeval& time) {
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
}

[[noreturn]] void become(const std::vector<std::string>& arguments) {
  const int nowhere = ::open("/dev/null", O_RDWR);
  ::dup2(nowhere, STDIN_FILENO);
  ::dup2(nowhere, STDOUT_FILENO);
  ::dup2(nowhere, STDERR_FILENO);
  std::vector<char*> words;
  for (const auto& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  ::execvp(words.front(), words.data());
  ::_exit(127);
}

double middle(std::vector<double> values) {
  const auto at = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), at, values.end());
  return *at;
}

}  // namespace

Cost run(const std::vector<std::string>& arguments) {
  const auto begin = std::chrono::steady_clock::now();
  const pid_t child = ::fork();
  if (child < 0) return {};
  if (child == 0) become(arguments);
  int status = 0;
  rusage used{};
  ::wait4(child, &status, 0, &used);
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
  return {elapsed.count(), seconds(used.ru_utime), seconds(used.ru_stime),
          static_cast<double>(used.ru_maxrss) * 1024 / 1e6,
          WIFEXITED(status) && WEXITSTATUS(status) == 0};
}

bool isInstalled(const std::string& program) {
  if (program.find('/') != std::string::npos) return std::filesystem::exists(program);
  const char* path = std::getenv("PATH");
  std::istringstream folders(path == nullptr ? "" : path);
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (::access((folder + "/" + program).c_str(), X_OK) == 0) return true;
  }
  return false;
}

Cost median(const std::vector<Cost>& runs) {
  const auto of = [&](double Cost::*figure) {
    std::vector<double> values;
    for (const auto& each : runs) values.push_back(each.*figure);
    return middle(std::move(values));
  };
  const bool succeeded =
      std::all_of(runs.begin(), runs.end(), [](const Cost& each) { return each.succeeded; });
  return {of(&Cost::seconds), of(&Cost::userSeconds), of(&Cost::systemSeconds),
          of(&Cost::peakMegabytes), succeeded};
}

}  // namespace volbrin::bench
