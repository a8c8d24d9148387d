#pragma once

#include <climits>
#include <cstddef>
#include <string>

#include "../Descriptor.hpp"

namespace volbrin {

/// The folder from which the rest of `relative`, from `at` on, is a path that the system takes at
/// once; `passing` holds it when it isn't `folder` itself. `open`, each system's own, opens a
/// folder by a path below another and refuses links on the way. Null when the way is barred.
template <class Open>
[[nodiscard]] const Descriptor* shortenWay(const Descriptor& folder, const std::string& relative,
                                           std::size_t& at, Descriptor& passing, const Open& open) {
  const Descriptor* above = &folder;
  while (relative.size() - at >= PATH_MAX) {
    const std::size_t cut = relative.rfind('/', at + PATH_MAX - 2);
    if (cut == std::string::npos || cut <= at) return nullptr;
    passing = open(*above, relative.substr(at, cut - at));
    if (!passing) return nullptr;
    above = &passing;
    at = cut + 1;
  }
  return above;
}

}  // namespace volbrin
