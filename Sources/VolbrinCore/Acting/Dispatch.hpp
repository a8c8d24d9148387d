#pragma once

#include "Act.hpp"

namespace volbrin {

/// Takes one finding of the fresh scan down the ladder of refusals and, if nothing keeps it, acts
/// on it by its kind. Raises nothing.
[[nodiscard]] CleanResult treat(const Finding& finding, const ActScene& scene);

}  // namespace volbrin
