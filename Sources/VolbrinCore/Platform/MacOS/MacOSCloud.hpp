#pragma once

#include <string>

/// iCloud's files on a Mac, by Foundation's NSFileManager and the resource values of NSURL. What
/// the Platform of a Mac answers with.
namespace volbrin {

/// Asks for a file's contents (startDownloadingUbiquitousItemAtURL:); where that is refused,
/// brctl(1) is asked, and its answer isn't looked at.
void requestCloudDownload(const std::string& path);

/// Whether the file has the status NSURLUbiquitousItemDownloadingStatusCurrent, asked anew.
[[nodiscard]] bool isCloudFileCurrent(const std::string& path);

/// Gives a file's contents back (evictUbiquitousItemAtURL:), or else asks brctl(1).
void evictCloudFile(const std::string& path);

}  // namespace volbrin
