#pragma once

#include <string>
#include <string_view>

#include "Dates.hpp"

namespace volbrin {

/// A date for people: `pattern` filled in by the Unicode date format patterns (UTS #35, part 4), in
/// the user's locale and time zone.
[[nodiscard]] std::string dateText(Date date, std::string_view pattern);

}  // namespace volbrin
