#pragma once

#include <span>
#include <string_view>

#include "Plists.hpp"

namespace volbrin::demo {

enum class Receipt { none, appStore };

/// `App::lastUsedDays` of an app for which the machine knows no last use.
inline constexpr double neverNoted = -1;

/// One app bundle of the machine.
struct App {
  std::string_view path;      ///< of the bundle, in machine form
  std::string_view bundleId;  ///< empty: the Info.plist has none
  std::string_view version;
  std::string_view teamId;  ///< empty: unsigned
  double megabytes;         ///< as measured on the machine
  double installedDays;     ///< age of its files
  double lastUsedDays;      ///< or `neverNoted`
  PlistForm form = PlistForm::xml;
  Receipt receipt = Receipt::none;
};

/// Every app on the machine except those inside Steam games.
std::span<const App> allApps();

}  // namespace volbrin::demo
