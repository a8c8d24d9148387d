#include "Plists.hpp"

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace volbrin::demo {

namespace {

using Plist = std::unique_ptr<void, decltype(&plist_free)>;
using Bytes = std::unique_ptr<char, decltype(&std::free)>;

void set(const Plist& dict, const char* key, std::string_view value) {
  if (value.empty()) return;
  plist_dict_set_item(dict.get(), key, plist_new_string(std::string(value).c_str()));
}

}  // namespace

std::string infoPlist(const BundleInfo& info, PlistForm form) {
  const Plist dict(plist_new_dict(), plist_free);
  set(dict, "CFBundleDevelopmentRegion", "en");
  set(dict, "CFBundleExecutable", info.executable);
  set(dict, "CFBundleIdentifier", info.bundleId);
  set(dict, "CFBundleName", info.name);
  set(dict, "CFBundlePackageType", "APPL");
  set(dict, "CFBundleShortVersionString", info.version);
  set(dict, "LSMinimumSystemVersion", "11.0");
  set(dict, "VolbrinTeamID", info.teamId);

  char* data = nullptr;
  std::uint32_t length = 0;
  if (form == PlistForm::binary) {
    plist_to_bin(dict.get(), &data, &length);
  } else {
    plist_to_xml(dict.get(), &data, &length);
  }
  const Bytes bytes(data, std::free);
  return {data, length};
}

}  // namespace volbrin::demo
