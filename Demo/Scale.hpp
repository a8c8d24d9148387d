#pragma once

#include <cstdint>

namespace volbrin::demo {

/// What one byte on disk stands for on the demo machine: the fixture's `scale`. Large enough that
/// a machine of well over 100 GB fits in a few dozen megabytes, small enough that a single block
/// still reads as a small file.
inline constexpr double sizeScale = 2200.0;

/// The unit in which nearly every file system hands out space, in bytes. Sizes are laid out in
/// whole blocks, because space on disk is what the machine's measuring counts.
inline constexpr std::int64_t blockBytes = 4096;

/// How many blocks on disk measure as about `megabytes` (10^6 bytes) on the demo machine.
constexpr std::int64_t blocksFor(double megabytes) {
  return static_cast<std::int64_t>(megabytes * 1e6 / sizeScale / static_cast<double>(blockBytes));
}

}  // namespace volbrin::demo
