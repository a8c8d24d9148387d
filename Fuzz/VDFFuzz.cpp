#include <cstddef>
#include <cstdint>
#include <string_view>

#include "VDF.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto parsed = volbrin::VDF::parseText({reinterpret_cast<const char*>(data), size});
  (void)parsed.at("libraryfolders");
  return 0;
}
