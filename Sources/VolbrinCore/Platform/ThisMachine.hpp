#pragma once

#include <memory>
#include <string>

#include "Platform.hpp"

namespace volbrin {

/// The platform of the computer that this process runs on; each system's own source file has it.
[[nodiscard]] std::shared_ptr<const Platform> platformOfThisMachine();

/// The home of the user who runs this process, as the system gives it.
[[nodiscard]] std::string homeOfThisUser();

}  // namespace volbrin
