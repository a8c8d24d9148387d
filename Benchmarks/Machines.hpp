#pragma once

#include <cstddef>
#include <string>

namespace volbrin::bench {

/// A fake machine for whole scans: a home of about `files` files in the places where the finders
/// look and in those where they don't, apps that are here and data of apps that aren't, and a drive
/// with copies of two of the home's folders.
void makeHomeMachine(const std::string& root, std::size_t files);

}  // namespace volbrin::bench
