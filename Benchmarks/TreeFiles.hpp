#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "../Sources/VolbrinCore/Descriptor.hpp"

/// Making folders and files, for the makers of trees. Each raises std::system_error.
namespace volbrin::bench {

/// Opens the folder `name` of `parent`, made if it isn't there.
Descriptor makeFolder(int parent, const std::string& name);

/// The folder at `path`, made with those above it.
Descriptor makeFolders(const std::string& path);

/// A file of at most 65,536 bytes.
void makeFile(const Descriptor& folder, const std::string& name, std::size_t bytes);

/// A file with these contents.
void makeTextFile(const Descriptor& folder, const std::string& name, const std::string& text);

/// A fixed sequence of numbers (SplitMix64): what is made by it is the same at every run.
class Sequence {
 public:
  explicit Sequence(std::uint64_t start = 1) : state_(start) {}

  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15U;
    std::uint64_t x = state_;
    x = (x ^ (x >> 30U)) * 0xBF58476D1CE4E5B9U;
    x = (x ^ (x >> 27U)) * 0x94D049BB133111EBU;
    return x ^ (x >> 31U);
  }
  std::uint64_t below(std::uint64_t limit) { return next() % limit; }

 private:
  std::uint64_t state_;
};

}  // namespace volbrin::bench
