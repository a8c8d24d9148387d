#include <cstddef>
#include <cstdint>
#include <string_view>

#include "PropertyList.hpp"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  (void)volbrin::stringInPropertyList(bytes, "CFBundleIdentifier");
  return 0;
}
