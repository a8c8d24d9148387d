#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "DirectoryReader.hpp"

namespace volbrin {

/// Names of one folder that still have to be looked at, with their kinds, in one block of memory: a
/// folder of a million folders costs little more than their names. Taken from the front.
class NameList {
 public:
  void add(const char* name, EntryKind kind) {
    block_ += static_cast<char>(kind);
    block_.append(name);
    block_ += '\0';
    ++count_;
  }

  /// The first name, which stays valid until the list changes its owner; absent when none is left.
  [[nodiscard]] std::optional<ListedEntry> take() {
    if (count_ == 0) return std::nullopt;
    const auto kind = static_cast<EntryKind>(block_[at_]);
    const char* name = block_.c_str() + at_ + 1;
    at_ += 2 + std::char_traits<char>::length(name);
    --count_;
    return ListedEntry{name, kind};
  }

  /// Splits the list: what is returned holds the first half of the names, rounded up.
  [[nodiscard]] NameList takeHalf() {
    NameList half;
    half.count_ = (count_ + 1) / 2;
    const std::size_t begin = at_;
    for (std::size_t i = 0; i < half.count_; ++i) {
      at_ = block_.find('\0', at_ + 1) + 1;
    }
    half.block_ = block_.substr(begin, at_ - begin);
    count_ -= half.count_;
    return half;
  }

  /// Puts the names in ascending order of their bytes.
  void sort() {
    std::vector<std::string_view> items;  // each with its kind in front and its NUL behind
    for (std::size_t from = at_; from < block_.size(); from += items.back().size()) {
      const std::size_t end = block_.find('\0', from + 1) + 1;
      items.push_back(std::string_view(block_).substr(from, end - from));
    }
    std::sort(items.begin(), items.end(), [](auto a, auto b) { return a.substr(1) < b.substr(1); });
    std::string sorted;
    sorted.reserve(block_.size() - at_);
    for (const auto item : items) sorted += item;
    block_ = std::move(sorted);
    at_ = 0;
  }

  [[nodiscard]] std::size_t count() const { return count_; }

 private:
  std::string block_;
  std::size_t at_ = 0;
  std::size_t count_ = 0;
};

}  // namespace volbrin
