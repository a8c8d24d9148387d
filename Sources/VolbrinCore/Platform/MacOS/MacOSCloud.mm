#include "MacOSCloud.hpp"

#import <Foundation/Foundation.h>

#include <spawn.h>
#include <sys/wait.h>

extern char** environ;

namespace volbrin {
namespace {

NSURL* urlOf(const std::string& path) {
  return [NSURL fileURLWithFileSystemRepresentation:path.c_str() isDirectory:NO relativeToURL:nil];
}

/// The command-line tool of the same service, by argument vector.
void runBrctl(const char* verb, const std::string& path) {
  const char* const words[] = {"brctl", verb, path.c_str(), nullptr};
  pid_t child = 0;
  if (::posix_spawn(&child, "/usr/bin/brctl", nullptr, nullptr, const_cast<char* const*>(words),
                    environ) == 0) {
    ::waitpid(child, nullptr, 0);
  }
}

}  // namespace

void requestCloudDownload(const std::string& path) {
  @autoreleasepool {
    NSError* error = nil;
    if (![NSFileManager.defaultManager startDownloadingUbiquitousItemAtURL:urlOf(path)
                                                                     error:&error]) {
      runBrctl("download", path);
    }
  }
}

bool isCloudFileCurrent(const std::string& path) {
  @autoreleasepool {
    NSURL* url = urlOf(path);
    [url removeAllCachedResourceValues];
    NSString* status = nil;
    return [url getResourceValue:&status
                          forKey:NSURLUbiquitousItemDownloadingStatusKey
                           error:nil] &&
           [status isEqualToString:NSURLUbiquitousItemDownloadingStatusCurrent];
  }
}

void evictCloudFile(const std::string& path) {
  @autoreleasepool {
    NSError* error = nil;
    if (![NSFileManager.defaultManager evictUbiquitousItemAtURL:urlOf(path) error:&error]) {
      runBrctl("evict", path);
    }
  }
}

}  // namespace volbrin
