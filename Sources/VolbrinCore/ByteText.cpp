#include "ByteText.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace volbrin {

std::string byteText(ByteCount bytes) {
  const double gigabytes = static_cast<double>(bytes) / 1e9;
  const double megabytes = static_cast<double>(bytes) / 1e6;
  if (gigabytes >= 100) return fmt::format("{:.0f} GB", std::round(gigabytes));
  if (gigabytes >= 1) {
    std::string text = fmt::format("{:.1f} GB", gigabytes);
    constexpr std::string_view whole = ".0 GB";
    if (text.ends_with(whole)) text.replace(text.size() - whole.size(), whole.size(), " GB");
    return text;
  }
  if (megabytes >= 1) return fmt::format("{:.0f} MB", std::round(megabytes));
  return fmt::format("{} KB", std::max<ByteCount>(bytes / 1000, 0));
}

}  // namespace volbrin
