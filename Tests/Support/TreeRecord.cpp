#include "TreeRecord.hpp"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <vector>

namespace volbrin::test {
namespace {

namespace fs = std::filesystem;

std::string attributesOf(const std::string& path) {
  std::array<char, 4096> names{};
  const auto length = ::llistxattr(path.c_str(), names.data(), names.size());
  std::string text(names.data(), static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
  std::array<char, 64> value{};
  const auto size = ::lgetxattr(path.c_str(), "user.mark", value.data(), value.size());
  return text.append(value.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
}

std::size_t contentsHash(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  const std::string contents(std::istreambuf_iterator<char>(file), {});
  return std::hash<std::string>{}(contents);
}

}  // namespace

TreeRecord recordOf(const std::string& top) {
  TreeRecord record;
  std::map<ino_t, std::string> firstNames;
  const auto add = [&](const std::string& path, const std::string& name) {
    struct stat status {};
    EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
    auto& text = record[name];
    for (const auto part :
         {std::int64_t(status.st_mode), std::int64_t(status.st_uid), std::int64_t(status.st_gid),
          status.st_mtim.tv_sec, status.st_mtim.tv_nsec}) {
      text += std::to_string(part) + " ";
    }
    if (S_ISREG(status.st_mode)) {
      text += std::to_string(status.st_size) + (status.st_blocks < 64 ? " few blocks" : "");
      text += " " + std::to_string(contentsHash(path)) + " ";
      text += firstNames.try_emplace(status.st_ino, name).first->second;
    }
    if (S_ISLNK(status.st_mode)) text += fs::read_symlink(path).string();
    text += attributesOf(path);
  };
  add(top, "");
  if (!fs::is_directory(fs::symlink_status(top))) return record;
  std::vector<fs::path> paths;
  for (const auto& entry : fs::recursive_directory_iterator(top)) paths.push_back(entry.path());
  std::sort(paths.begin(), paths.end());
  for (const auto& path : paths) add(path.string(), path.string().substr(top.size()));
  return record;
}

}  // namespace volbrin::test
