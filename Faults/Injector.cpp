/// A library that is loaded before the C library (ld.so(8), LD_PRELOAD) and makes one call of a
/// program go wrong. It counts the calls that change the disk ("change"), those and the ones that
/// take hold of a folder ("look"), and those that let go of a copy before it is read back
/// ("proof"). The environment says which one of them fails, and how:
///
///   FAULT=<class>:<number>:kill-before            the process ends before the call
///   FAULT=<class>:<number>:kill-after             or right behind it
///   FAULT=<class>:<number>:interrupt              the user presses Ctrl-C before the call
///   FAULT=<class>:<number>:error:<errno>          the call fails
///   FAULT=<class>:<number>:flip                   a bit of the file is turned over first
///   FAULT=<class>:<number>:unmount:<path>         the drive goes away first
///   FAULT=<class>:<number>:plant:<path>:<other>   the item is moved aside, a link takes its place
///   FAULT_COUNTS=<file>                           at its end the process writes its counts there

#include <dlfcn.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct Plan {
  std::string kind;  ///< of the calls that are counted
  int number = 0;
  std::string action;
  std::vector<std::string> words;
};

Plan readPlan() {
  Plan plan;
  const char* text = std::getenv("FAULT");
  std::vector<std::string> words;
  for (std::string rest = text == nullptr ? "" : text; !rest.empty();) {
    const auto end = rest.find(':');
    words.push_back(rest.substr(0, end));
    rest = end == std::string::npos ? "" : rest.substr(end + 1);
  }
  if (words.size() < 3) return plan;
  plan.kind = words[0];
  plan.number = std::atoi(words[1].c_str());
  plan.action = words[2];
  plan.words.assign(words.begin() + 3, words.end());
  return plan;
}

class Counts {
 public:
  ~Counts() {
    const char* path = std::getenv("FAULT_COUNTS");
    if (path == nullptr) return;
    const std::string text =
        std::to_string(changes) + " " + std::to_string(looks) + " " + std::to_string(proofs) + "\n";
    const auto file = ::syscall(SYS_openat, AT_FDCWD, path, O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::syscall(SYS_write, file, text.data(), text.size());
  }

  std::atomic<int> changes = 0, looks = 0, proofs = 0;
};

const Plan& plan() {
  static const Plan value = readPlan();
  return value;
}

Counts& counts() {
  static Counts value;
  return value;
}

/// The C library's own function of that name.
template <class Function>
Function original(const char* name) {
  return reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

void flipBit(int file) {
  const std::string path = "/proc/self/fd/" + std::to_string(file);
  const auto writable = static_cast<int>(::syscall(SYS_openat, AT_FDCWD, path.c_str(), O_RDWR));
  struct stat status {};
  if (writable < 0 || ::fstat(writable, &status) != 0 || status.st_size == 0) return;
  char byte = 0;
  const off_t at = status.st_size / 2;
  ::syscall(SYS_pread64, writable, &byte, 1, at);
  byte = static_cast<char>(byte ^ 16);
  ::syscall(SYS_pwrite64, writable, &byte, 1, at);
  ::syscall(SYS_fsync, writable);
  ::syscall(SYS_close, writable);
}

void plantLink(const std::string& path, const std::string& other) {
  const std::string aside = path + ".aside";
  ::syscall(SYS_renameat2, AT_FDCWD, path.c_str(), AT_FDCWD, aside.c_str(), 0);
  ::syscall(SYS_symlinkat, other.c_str(), AT_FDCWD, path.c_str());
}

/// Whether this is the call that shall go wrong.
bool isMeant(const char* kind, int number) {
  return plan().number == number && plan().kind == kind;
}

/// What comes before the call; false when it shall not be made.
bool before(int file) {
  const auto& [kind, number, action, words] = plan();
  if (action == "kill-before") ::kill(::getpid(), SIGKILL);
  if (action == "interrupt") ::kill(::getpid(), SIGINT);
  if (action == "flip") flipBit(file);
  if (action == "unmount") ::syscall(SYS_umount2, words.at(0).c_str(), MNT_DETACH);
  if (action == "plant") plantLink(words.at(0), words.at(1));
  if (action != "error") return true;
  errno = std::atoi(words.at(0).c_str());
  return false;
}

void after() {
  if (plan().action == "kill-after") ::kill(::getpid(), SIGKILL);
}

template <class Call>
auto changing(const Call& call, int file = -1) -> decltype(call()) {
  const int look = ++counts().looks;
  const bool isHit = isMeant("change", ++counts().changes) || isMeant("look", look);
  if (isHit && !before(file)) return -1;
  const auto result = call();
  if (isHit) {
    const int error = errno;
    after();
    errno = error;
  }
  return result;
}

bool isStandard(int file) { return file >= 0 && file <= 2; }

}  // namespace

// A function's parameter list can't stand in parentheses of its own.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define CHANGING(name, parameters, arguments)                    \
  extern "C" int name parameters {                               \
    static const auto real = original<int(*) parameters>(#name); \
    return changing([&] { return real arguments; });             \
  }

// NOLINTEND(bugprone-macro-parentheses)

CHANGING(mkdir, (const char* path, mode_t mode), (path, mode))
CHANGING(mkdirat, (int folder, const char* path, mode_t mode), (folder, path, mode))
CHANGING(rename, (const char* from, const char* to), (from, to))
CHANGING(renameat, (int a, const char* from, int b, const char* to), (a, from, b, to))
CHANGING(renameat2, (int a, const char* from, int b, const char* to, unsigned flags),
         (a, from, b, to, flags))
CHANGING(unlink, (const char* path), (path))
CHANGING(unlinkat, (int folder, const char* path, int flags), (folder, path, flags))
CHANGING(rmdir, (const char* path), (path))
CHANGING(link, (const char* from, const char* to), (from, to))
CHANGING(linkat, (int a, const char* from, int b, const char* to, int flags),
         (a, from, b, to, flags))
CHANGING(symlink, (const char* text, const char* path), (text, path))
CHANGING(symlinkat, (const char* text, int folder, const char* path), (text, folder, path))
CHANGING(ftruncate, (int file, off_t size), (file, size))
CHANGING(fchmod, (int file, mode_t mode), (file, mode))
CHANGING(fchmodat, (int folder, const char* path, mode_t mode, int flags),
         (folder, path, mode, flags))
CHANGING(fchown, (int file, uid_t user, gid_t group), (file, user, group))
CHANGING(fchownat, (int folder, const char* path, uid_t user, gid_t group, int flags),
         (folder, path, user, group, flags))
CHANGING(futimens, (int file, const timespec times[2]), (file, times))
CHANGING(utimensat, (int folder, const char* path, const timespec times[2], int flags),
         (folder, path, times, flags))
CHANGING(fsetxattr, (int file, const char* name, const void* value, size_t size, int flags),
         (file, name, value, size, flags))
CHANGING(fsync, (int file), (file))
CHANGING(fdatasync, (int file), (file))
CHANGING(syncfs, (int file), (file))

extern "C" ssize_t write(int file, const void* bytes, size_t count) {
  static const auto real = original<ssize_t (*)(int, const void*, size_t)>("write");
  if (isStandard(file)) return real(file, bytes, count);
  return changing([&] { return real(file, bytes, count); });
}

extern "C" ssize_t pwrite(int file, const void* bytes, size_t count, off_t at) {
  static const auto real = original<ssize_t (*)(int, const void*, size_t, off_t)>("pwrite");
  return changing([&] { return real(file, bytes, count, at); });
}

extern "C" ssize_t copy_file_range(int from, off64_t* fromAt, int to, off64_t* toAt, size_t count,
                                   unsigned flags) {
  static const auto real =
      original<ssize_t (*)(int, off64_t*, int, off64_t*, size_t, unsigned)>("copy_file_range");
  return changing([&] { return real(from, fromAt, to, toAt, count, flags); });
}

extern "C" int openat(int folder, const char* path, int flags, ...) {
  static const auto real = original<int (*)(int, const char*, int, mode_t)>("openat");
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  const auto call = [&] { return real(folder, path, flags, mode); };
  if ((flags & (O_CREAT | O_TRUNC)) != 0) return changing(call);
  if ((flags & O_PATH) != 0 && isMeant("look", ++counts().looks)) before(-1);
  return call();
}

extern "C" int open(const char* path, int flags, ...) {
  va_list rest;
  va_start(rest, flags);
  const mode_t mode = (flags & (O_CREAT | __O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
  va_end(rest);
  return openat(AT_FDCWD, path, flags, mode);
}

extern "C" int posix_fadvise(int file, off_t at, off_t length, int advice) {
  static const auto real = original<int (*)(int, off_t, off_t, int)>("posix_fadvise");
  if (isMeant("proof", ++counts().proofs)) before(file);
  return real(file, at, length, advice);
}
