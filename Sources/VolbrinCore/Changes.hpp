#pragma once

#include <cstdint>
#include <string>

#include "Dates.hpp"

namespace volbrin {

/// Whether the item at `path`, or anything in it, changed later than `since`. A tree of more than
/// `limit` entries counts as changed: too big to check to the end, it is better left alone. Inside
/// a fenced folder nothing is looked at.
[[nodiscard]] bool changedRecently(const std::string& path, Date since, std::int64_t limit);

}  // namespace volbrin
