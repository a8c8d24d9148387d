#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "Catalog.hpp"
#include "CatalogCheck.hpp"

using namespace volbrin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  try {
    const auto catalog = fromJson<Catalog>(parseJson(text, "input"), "input");
    (void)problemsIn(catalog);
    // What was read can be written and reads back as the same.
    const auto written = jsonText(toJson(catalog));
    if (jsonText(toJson(fromJson<Catalog>(parseJson(written, "written"), "written"))) != written) {
      std::abort();
    }
  } catch (const DecodingError& error) {
    if (error.problems().empty() ||
        std::string_view(error.what()).find('\n') != std::string::npos) {
      std::abort();
    }
  }
  return 0;
}
