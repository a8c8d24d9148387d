#include "Ledger.hpp"

#include <algorithm>
#include <filesystem>

#include "FileDigest.hpp"
#include "Paths.hpp"

namespace volbrin::faults {

namespace fs = std::filesystem;

Ledger::Ledger(const std::set<std::string>& tops, const std::set<std::string>& leftOut) {
  for (const auto& top : tops) {
    for (const auto& entry : fs::recursive_directory_iterator(top)) {
      if (!entry.is_regular_file() || entry.is_symlink()) continue;
      const auto path = entry.path().string();
      const bool counts = std::none_of(leftOut.begin(), leftOut.end(),
                                       [&](const auto& each) { return isAtOrInside(path, each); });
      if (counts) {
        contents_.emplace(sha256Of(path).value_or(""), static_cast<ByteCount>(entry.file_size()));
      }
    }
  }
}

ByteCount Ledger::lostIn(const Ledger& later) const {
  ByteCount lost = 0;
  for (const auto& [digest, bytes] : contents_) {
    if (!later.contents_.contains(digest)) lost += bytes;
  }
  return lost;
}

}  // namespace volbrin::faults
