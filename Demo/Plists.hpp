#pragma once

#include <string>
#include <string_view>

namespace volbrin::demo {

/// The two written forms of a property list.
enum class PlistForm { xml, binary };

/// What an app bundle's Info.plist tells. An empty text leaves the key out.
struct BundleInfo {
  std::string_view bundleId;
  std::string_view name;
  std::string_view executable;
  std::string_view version;
  std::string_view teamId;  ///< stands in for the signature, which a fake machine's apps lack
};

/// The contents of an Info.plist, ready to be written.
std::string infoPlist(const BundleInfo& info, PlistForm form);

}  // namespace volbrin::demo
