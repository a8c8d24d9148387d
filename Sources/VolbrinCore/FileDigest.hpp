#pragma once

#include <optional>
#include <string>
#include <vector>

/// The digests of files.
namespace volbrin {

enum class ReadFrom {
  anywhere,
  drive,  ///< what the drive holds, not memory
};

/// The SHA-256 (FIPS 180-4) of a file's contents in 64 lower-case hexadecimal digits; absent when
/// it can't be opened. A read that fails ends it like the end of the file. Reads in order, in
/// pieces of at most 1 MiB.
[[nodiscard]] std::optional<std::string> sha256Of(const std::string& path,
                                                  ReadFrom from = ReadFrom::anywhere);

/// The same of several files, in their order: on all cores, and on each core of two or three files
/// at once where its processor does that faster than one after the other.
[[nodiscard]] std::vector<std::optional<std::string>> sha256OfEach(
    const std::vector<std::string>& paths, ReadFrom from = ReadFrom::anywhere);

}  // namespace volbrin
