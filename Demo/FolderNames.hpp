#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace volbrin::demo {

/// The names in the open folder `folder`, sorted, without "." and "..". Raises `Failure`, naming
/// the folder by `shown`, when it can't be read to its end.
std::vector<std::string> folderNames(int folder, std::string_view shown);

}  // namespace volbrin::demo
