#include "Trees.hpp"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <system_error>
#include <vector>

#include "TreeFiles.hpp"

namespace volbrin::bench {
namespace {

void check(bool good, const std::string& what) {
  if (!good) throw std::system_error(errno, std::generic_category(), what);
}

void makeFiles(const Descriptor& folder, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) makeFile(folder, fmt::format("file-{:05}.txt", i), 1);
}

void makeLevel(const Descriptor& folder, std::size_t levelsBelow, std::size_t filesPerFolder) {
  makeFiles(folder, filesPerFolder);
  if (levelsBelow == 0) return;
  for (const char* name : {"left", "right"}) {
    makeLevel(makeFolder(folder.get(), name), levelsBelow - 1, filesPerFolder);
  }
}

void makeHomeFile(const Descriptor& folder, const std::string& name, Sequence& random) {
  const auto kind = random.below(200);
  if (kind == 0) {
    check(::symlinkat("somewhere/else", folder.get(), name.c_str()) == 0 || errno == EEXIST, name);
  } else if (kind == 1) {
    makeFile(folder, name, 0);
    const Descriptor file(::openat(folder.get(), name.c_str(), O_WRONLY | O_CLOEXEC));
    check(::ftruncate(file.get(), 10'000'000) == 0, name);
  } else {
    makeFile(folder, name, random.below(10) == 0 ? random.below(20000) : random.below(600));
    if (kind == 2) {
      const auto twin = name + ".twin";
      check(::linkat(folder.get(), name.c_str(), folder.get(), twin.c_str(), 0) == 0 ||
                errno == EEXIST,
            twin);
    }
  }
}

}  // namespace

void makeDeepTree(const std::string& root, std::size_t filesPerFolder) {
  makeLevel(makeFolder(AT_FDCWD, root), 11, filesPerFolder);
}

void makeWideTree(const std::string& root, std::size_t filesPerFolder) {
  const Descriptor top = makeFolder(AT_FDCWD, root);
  for (int i = 0; i < 20; ++i) {
    makeFiles(makeFolder(top.get(), fmt::format("folder-{:02}", i)), filesPerFolder);
  }
}

void makeHomeTree(const std::string& root, std::size_t files) {
  Sequence random;
  const Descriptor top = makeFolder(AT_FDCWD, root);
  std::size_t made = 0;
  for (int project = 0; made < files; ++project) {
    const Descriptor folder = makeFolder(top.get(), fmt::format("project {:04}", project));
    const auto packages = 3 + random.below(40);
    for (std::uint64_t package = 0; package < packages && made < files; ++package) {
      const Descriptor inner = makeFolder(folder.get(), fmt::format("package-{:02}", package));
      const Descriptor deep = makeFolder(inner.get(), "src");
      const auto count = random.below(40) == 0 ? 2000 : random.below(24);
      for (std::uint64_t i = 0; i < count; ++i, ++made) {
        makeHomeFile(random.below(2) == 0 ? inner : deep, fmt::format("item {:04}.js", i), random);
      }
    }
  }
}

void makeFileTree(const std::string& root, std::size_t count, std::size_t bytes) {
  constexpr std::size_t wordsPerPiece = 131072;
  Sequence random;
  const Descriptor top = makeFolder(AT_FDCWD, root);
  std::vector<std::uint64_t> piece(std::min(wordsPerPiece, bytes / sizeof(std::uint64_t) + 1));
  for (std::size_t i = 0; i < count; ++i) {
    const Descriptor folder = makeFolder(top.get(), fmt::format("folder-{:04}", i / 100));
    const auto name = fmt::format("file-{:05}.bin", i);
    const Descriptor file(
        ::openat(folder.get(), name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644));
    check(static_cast<bool>(file), name);
    for (std::size_t left = bytes; left > 0;) {
      for (auto& word : piece) word = random.next();
      const auto wanted = std::min(left, piece.size() * sizeof(std::uint64_t));
      const auto written = ::write(file.get(), piece.data(), wanted);
      check(written > 0, name);
      left -= static_cast<std::size_t>(written);
    }
  }
}

void makeDeepChain(const std::string& root, std::size_t levels) {
  Descriptor folder = makeFolder(AT_FDCWD, root);
  for (std::size_t i = 0; i < levels; ++i) {
    makeFolder(folder.get(), "beside");
    folder = makeFolder(folder.get(), "down");
  }
  makeFile(folder, "bottom", 1);
}

}  // namespace volbrin::bench
