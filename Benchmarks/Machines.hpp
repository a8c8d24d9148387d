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

/// From this size on a file of `makeCloudMachine` is a big one.
constexpr std::size_t bigCloudFileBytes = 30'000;

/// A fake machine with about `files` files in iCloud Drive, a thousand in each folder. One in 500
/// is a big one, and every other of these has a copy of the same name and contents in
/// "~/Documents".
void makeCloudMachine(const std::string& root, std::size_t files);

/// A fake machine with a history of 100,000 lines.
void makeHistoryMachine(const std::string& root);
/// Where that is.
[[nodiscard]] std::string historyIn(const std::string& root);

}  // namespace volbrin::bench
