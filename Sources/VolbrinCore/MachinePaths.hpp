#pragma once

#include <string>
#include <string_view>

namespace volbrin {

/// The two forms of a machine's paths, on one machine: as people and rule files write them ("~/x",
/// "/Applications"), and absolute. `root` is empty on a real machine.

/// From the written form: "~" is `home`, "~/x" lies in it, anything else is put behind `root`.
[[nodiscard]] std::string absolutePath(std::string_view written, std::string_view root,
                                       std::string_view home);

/// The way back, for showing: `home` is "~", the root of a fake machine "/". What lies under
/// neither stays as it is.
[[nodiscard]] std::string displayedPath(std::string_view path, std::string_view root,
                                        std::string_view home);

}  // namespace volbrin
