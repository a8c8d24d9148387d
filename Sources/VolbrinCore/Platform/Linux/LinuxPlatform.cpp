#include "LinuxPlatform.hpp"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdlib>

#include "../../Files.hpp"
#include "../../Paths.hpp"
#include "../ThisMachine.hpp"
#include "ChildProcess.hpp"
#include "LinuxDrives.hpp"
#include "LinuxTrash.hpp"

namespace volbrin {
namespace {

/// The file that a process runs, from its link in /proc (proc_pid_exe(5)); absent for the kernel's
/// own threads and for other users' processes.
std::optional<std::string> executableOf(const std::string& process) {
  std::array<char, PATH_MAX> target{};
  const std::string link = "/proc/" + process + "/exe";
  const auto length = ::readlink(link.c_str(), target.data(), target.size());
  if (length <= 0) return std::nullopt;
  std::string path(target.data(), static_cast<std::size_t>(length));
  constexpr std::string_view replaced = " (deleted)";  // by an update, while it runs
  if (path.ends_with(replaced)) path.resize(path.size() - replaced.size());
  return path;
}

bool isProcess(const std::string& name) {
  return std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

}  // namespace

std::shared_ptr<const Platform> platformOfThisMachine() {
  const std::string home = homeOfThisUser();
  return std::make_shared<LinuxPlatform>(resolved(home).value_or(home));
}

std::string homeOfThisUser() {
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/') return home;
  const passwd* user = ::getpwuid(::getuid());
  return user != nullptr && user->pw_dir != nullptr ? user->pw_dir : "/";
}

std::vector<DriveInfo> LinuxPlatform::drives() const { return linuxDrives(); }

std::string LinuxPlatform::trashFolder() const { return homeTrash(home_); }

std::string LinuxPlatform::trash(const std::string& path) const { return moveToTrash(path, home_); }

bool LinuxPlatform::isInTrash(const std::string& path) const {
  // "$topdir/.Trash/$uid/files" and "$topdir/.Trash-$uid/files" on other drives.
  const auto number = std::to_string(::getuid());
  const auto own = below(trashFolder(), "files");
  return isInside(path, own) || isInside(path, resolved(own).value_or(own)) ||
         path.find("/.Trash/" + number + "/files/") != std::string::npos ||
         path.find("/.Trash-" + number + "/files/") != std::string::npos;
}

void LinuxPlatform::forgetTrashed(const std::string& path) const {
  if (isInTrash(path)) volbrin::forgetTrashed(path);
}

std::optional<std::string> LinuxPlatform::run(const std::vector<std::string>& arguments) const {
  if (arguments.empty()) return std::nullopt;
  const auto program = arguments.front().starts_with('/') ? std::optional(arguments.front())
                                                          : which(arguments.front());
  if (!program) return std::nullopt;
  return outputOf(*program, {arguments.begin() + 1, arguments.end()});
}

/// Nothing on Linux needs it: what only an administrator may touch here is a Mac's sound library.
bool LinuxPlatform::runAsAdmin(const std::vector<std::vector<std::string>>&) const { return false; }

std::optional<std::string> LinuxPlatform::which(const std::string& tool) const {
  return findTool(tool, {"/usr/local/bin", "/usr/bin", home_ + "/.bun/bin", home_ + "/.cargo/bin",
                         home_ + "/.local/bin"});
}

std::optional<Date> LinuxPlatform::lastUsed(const std::string&) const { return std::nullopt; }

std::set<std::string> LinuxPlatform::runningBundleIDs() const {
  std::set<std::string> names;
  for (const auto& process : listNames("/proc")) {
    if (!isProcess(process)) continue;
    if (const auto path = executableOf(process)) names.emplace(lastComponent(*path));
  }
  return names;
}

std::optional<std::vector<SimRuntime>> LinuxPlatform::simulatorRuntimes() const {
  return std::nullopt;
}

std::vector<std::string> LinuxPlatform::indexedApps() const { return {}; }

std::optional<std::string> LinuxPlatform::appPath(const std::string&) const { return std::nullopt; }

std::optional<std::string> LinuxPlatform::teamIdentifier(const std::string&) const {
  return std::nullopt;
}

}  // namespace volbrin
