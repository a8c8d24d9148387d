#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "../../Model.hpp"

namespace volbrin {

/// One line of /proc/self/mountinfo (proc_pid_mountinfo(5)), escapes resolved.
struct Mount {
  std::string device;      ///< "major:minor" of the file system
  std::string root;        ///< which of its folders is mounted: "/" but for bind mounts, subvolumes
  std::string path;        ///< where
  std::string fileSystem;  ///< its type, such as "ext4"
  std::string source;      ///< such as "/dev/sda1"

  bool operator==(const Mount&) const = default;
};

/// Reads the mount table; a line of another form is passed over.
[[nodiscard]] std::vector<Mount> parseMountInfo(std::string_view text);

/// Out of all mounts those that are drives to a user: local file systems on real devices, each
/// once, and "/" whatever it is made of. No pseudo, network, loop or bind mounts. `pseudoTypes` are
/// the file systems that need no device ("nodev" in /proc/filesystems).
[[nodiscard]] std::vector<Mount> driveMounts(const std::vector<Mount>& mounts,
                                             const std::vector<std::string>& pseudoTypes);

/// The drives of this machine, "/" first.
[[nodiscard]] std::vector<DriveInfo> linuxDrives();

/// Where the file system that holds `path` is mounted, from the table; "/" when nothing fits.
[[nodiscard]] std::string mountPointOf(const std::string& path);

}  // namespace volbrin
