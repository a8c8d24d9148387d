#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Fixture.hpp"
#include "Platform/FixturePlatform.hpp"

using namespace volbrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const auto fixture = fromJson<Fixture>(parseJson(text, "input"), "input");
    const FixturePlatform platform("/fake", "/fake/Users/me", fixture);
    (void)jsonText(toJson(platform.drives()));
    (void)platform.runningBundleIDs();
    for (const auto& [app, date] :
         fixture.lastUsed.value_or(decltype(fixture.lastUsed)::value_type())) {
      if (const auto used = platform.lastUsed("/fake" + app)) (void)iso8601(*used);
    }
    const auto written = jsonText(toJson(fixture));
    if (jsonText(toJson(fromJson<Fixture>(parseJson(written, "written"), "written"))) != written) {
      std::abort();
    }
  } catch (const DecodingError& error) {
    if (error.problems().empty()) std::abort();
  }
  return 0;
}
