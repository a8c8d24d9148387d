#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Dates.hpp"
#include "Goal.hpp"
#include "Text.hpp"

using namespace volbrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  if (!Goal::isTooLarge(text)) {
    if (const auto goal = Goal::parse(text)) {
      if (goal->bytesOf(1'000'000'000'000) < 0 || goal->description().empty()) std::abort();
    }
  }
  if (const auto date = parseIso8601(text)) {
    // Written and read again, a date loses no more than its fraction of a second.
    const auto again = parseIso8601(iso8601(*date));
    if (!again || *again != std::chrono::floor<std::chrono::seconds>(*date)) std::abort();
  }
  const auto name = normalized(text);
  if (normalized(name) != name || !isValidUtf8(repairedUtf8(text))) std::abort();
  return 0;
}
