#pragma once

#include <cstddef>
#include <string>

namespace volbrin::bench {

/// A fake machine for whole scans: a home of about `files` files in the places where the finders
/// look and in those where they don't, apps that are here and data of apps that aren't, and a drive
/// with copies of two of the home's folders.
void makeHomeMachine(const std::string& root, std::size_t files);

/// A fake machine with a folder "~/Big" of `count` files of `bytes` bytes each and a drive, and
/// beside its fixture the rules "rules.json": the place "big" moves the folder to the drive.
void makeMoveMachine(const std::string& root, std::size_t count, std::size_t bytes);

}  // namespace volbrin::bench
