#include "LinkedFiles.hpp"

namespace volbrin {
namespace {

/// The finalizer of SplitMix64: inode numbers run in sequence and must spread.
std::uint64_t hashOf(const FileID& file) {
  std::uint64_t x = file.inode + file.device * 0x9E3779B97F4A7C15U;
  x = (x ^ (x >> 30U)) * 0xBF58476D1CE4E5B9U;
  x = (x ^ (x >> 27U)) * 0x94D049BB133111EBU;
  return x ^ (x >> 31U);
}

}  // namespace

bool LinkedFiles::isFirst(const FileID& file) {
  if (file.inode == 0) return true;
  const std::uint64_t hash = hashOf(file);
  Part& part = parts_[hash % parts_.size()];
  const std::lock_guard guard(part.lock);
  if ((part.count + 1) * 4 > part.slots.size() * 3) part.grow();
  return part.insert(file, hash);
}

bool LinkedFiles::Part::insert(const FileID& file, std::uint64_t hash) {
  const std::size_t mask = slots.size() - 1;
  for (std::size_t at = (hash >> 4U) & mask;; at = (at + 1) & mask) {
    if (slots[at] == file) return false;
    if (slots[at].inode == 0) {
      slots[at] = file;
      ++count;
      return true;
    }
  }
}

void LinkedFiles::Part::grow() {
  std::vector<FileID> old(slots.empty() ? 16 : slots.size() * 2);
  old.swap(slots);
  count = 0;
  for (const auto& file : old) {
    if (file.inode != 0) insert(file, hashOf(file));
  }
}

}  // namespace volbrin
