#include "ChildProcess.hpp"

#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "../../Descriptor.hpp"
#include "../../Paths.hpp"
#include "../../Text.hpp"

namespace volbrin {
namespace {

/// What the child gets in place of our own: input, output, error, and signals as they are by
/// default.
class SpawnPlan {
 public:
  explicit SpawnPlan(const Descriptor& output) {
    ::posix_spawn_file_actions_init(&files_);
    ::posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    ::posix_spawn_file_actions_adddup2(&files_, output.get(), STDOUT_FILENO);
    ::posix_spawn_file_actions_addopen(&files_, STDERR_FILENO, "/dev/null", O_WRONLY, 0);

    ::posix_spawnattr_init(&attributes_);
    sigset_t none;
    sigset_t reset;
    ::sigemptyset(&none);
    ::sigemptyset(&reset);
    ::sigaddset(&reset, SIGPIPE);
    ::sigaddset(&reset, SIGINT);
    ::posix_spawnattr_setsigmask(&attributes_, &none);
    ::posix_spawnattr_setsigdefault(&attributes_, &reset);
    ::posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~SpawnPlan() {
    ::posix_spawn_file_actions_destroy(&files_);
    ::posix_spawnattr_destroy(&attributes_);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;

  [[nodiscard]] std::optional<pid_t> start(const std::string& program,
                                           const std::vector<std::string>& arguments) const {
    std::vector<char*> vector;
    vector.push_back(const_cast<char*>(program.c_str()));
    for (const auto& argument : arguments) vector.push_back(const_cast<char*>(argument.c_str()));
    vector.push_back(nullptr);
    pid_t child = 0;
    const int error =
        ::posix_spawn(&child, program.c_str(), &files_, &attributes_, vector.data(), environ);
    return error == 0 ? std::optional(child) : std::nullopt;
  }

 private:
  posix_spawn_file_actions_t files_{};
  posix_spawnattr_t attributes_{};
};

std::string readToEnd(const Descriptor& pipe) {
  std::string output;
  std::array<char, 65536> piece{};
  while (true) {
    const auto count = ::read(pipe.get(), piece.data(), piece.size());
    if (count > 0) {
      output.append(piece.data(), static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
      return output;
    }
  }
}

int waitFor(pid_t child) {
  int status = 0;
  while (::waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return -1;
  }
  return status;
}

bool isExecutableFile(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         ::access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::optional<std::string> outputOf(const std::string& program,
                                    const std::vector<std::string>& arguments) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) return std::nullopt;
  const Descriptor reading(ends[0]);
  Descriptor writing(ends[1]);
  const auto child = SpawnPlan(writing).start(program, arguments);
  writing.close();
  if (!child) return std::nullopt;
  const std::string output = readToEnd(reading);
  const int status = waitFor(*child);
  if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) return std::nullopt;
  return repairedUtf8(output);
}

std::optional<std::string> findTool(const std::string& tool, const std::vector<std::string>& more) {
  if (tool.empty() || tool.find('/') != std::string::npos) return std::nullopt;
  std::vector<std::string> folders;
  if (const char* path = std::getenv("PATH")) {
    for (const auto folder : split(path, ':')) folders.emplace_back(folder);
  }
  folders.insert(folders.end(), more.begin(), more.end());
  for (const auto& folder : folders) {
    if (auto candidate = below(folder, tool); isExecutableFile(candidate)) return candidate;
  }
  return std::nullopt;
}

}  // namespace volbrin
