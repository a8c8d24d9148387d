#pragma once

#include <string>

#include "Bytes.hpp"

namespace volbrin {

/// The engine's one form of a byte count for people, in decimal units: "2.3 GB", "120 GB", "2 MB",
/// "999 KB". Negative counts are "0 KB".
[[nodiscard]] std::string byteText(ByteCount bytes);

}  // namespace volbrin
