#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

namespace volbrin::test {

/// A tree of some hundred entries of every kind, under names of every kind.
class RandomTree {
 public:
  RandomTree(std::string top, std::uint32_t seed) : random_(seed), folders_{std::move(top)} {
    for (auto left = 100 + below(700); left > 0; --left) addEntry();
  }

  std::string anyPath() { return all_[below(all_.size())]; }
  std::unordered_set<std::string> someFolders() {
    std::unordered_set<std::string> some;
    for (auto left = below(4); left > 0; --left) some.insert(folders_[below(folders_.size())]);
    return some;
  }

 private:
  std::size_t below(std::size_t limit) { return random_() % limit; }

  std::string newPath() {
    static const std::string beginnings[] = {"\xFF\xFE", "line\nbreak ", ".", "*?[",
                                             std::string(240, 'n')};
    static const std::string endings[] = {"", "", "", ".TXT", ".txt", ".t"};
    // Mostly into few folders, so that some are large, and now and then into the newest.
    const auto few = std::min<std::size_t>(9, folders_.size());
    return folders_[below(4) == 0 ? folders_.size() - 1 : below(few)] + "/" +
           beginnings[below(std::size(beginnings))] + std::to_string(all_.size()) +
           endings[below(std::size(endings))];
  }

  void addEntry() {
    const std::string path = newPath();
    const auto kind = below(20);
    if (kind < 3) {
      std::filesystem::create_directory(path);
      folders_.push_back(path);
    } else if (kind < 6 && !files_.empty()) {
      std::filesystem::create_hard_link(files_[below(files_.size())], path);
    } else if (kind < 8) {
      std::filesystem::create_symlink(all_.empty() ? "nothing" : anyPath(), path);
    } else {
      const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0600);
      EXPECT_EQ(::posix_fallocate(file, 0, static_cast<off_t>(1 + below(40'000))), 0);
      ::close(file);
      files_.push_back(path);
    }
    all_.push_back(path);
  }

  std::mt19937 random_;
  std::vector<std::string> folders_, files_, all_;
};

}  // namespace volbrin::test
