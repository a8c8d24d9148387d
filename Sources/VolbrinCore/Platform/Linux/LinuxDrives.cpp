#include "LinuxDrives.hpp"

#include <sys/statvfs.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <optional>

#include "../../Files.hpp"
#include "../../Paths.hpp"
#include "../../Text.hpp"

namespace volbrin {
namespace {

/// The byte that an escape of four characters stands for: "\040" in the mount table, "\x20" in the
/// names of /dev/disk. Absent when `code` is none.
std::optional<char> escapedByte(std::string_view code) {
  const bool isHex = code.starts_with("\\x");
  const auto digits = code.substr(std::min<std::size_t>(isHex ? 2 : 1, code.size()));
  unsigned value = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value, isHex ? 16 : 8);
  const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
  if (code.size() != 4 || code.front() != '\\' || !isWhole || value > 0xFF) return std::nullopt;
  return static_cast<char>(value);
}

std::string unescaped(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const auto byte = escapedByte(text.substr(0, 4));
    result += byte.value_or(text.front());
    text.remove_prefix(byte ? 4 : 1);
  }
  return result;
}

std::vector<std::string> pseudoFileSystems() {
  std::vector<std::string> types;
  const auto table = readFileIfPossible("/proc/filesystems").value_or("");
  for (const auto line : split(table, '\n')) {
    if (line.starts_with("nodev\t")) types.emplace_back(line.substr(6));
  }
  return types;
}

/// Labels of file systems, by the device that carries them (udev(7)).
std::map<std::string, std::string> labelsByDevice() {
  const std::string folder = "/dev/disk/by-label";
  std::map<std::string, std::string> labels;
  for (const auto& name : listNames(folder)) {
    if (const auto device = resolved(below(folder, name))) labels[*device] = unescaped(name);
  }
  return labels;
}

bool isDrive(const Mount& mount, const std::vector<std::string>& pseudoTypes) {
  constexpr std::string_view loopMajor = "7:";  // Linux allocated devices, admin-guide/devices.txt
  // ZFS manages its devices itself, and so is registered as needing none.
  const bool isPseudo = mount.fileSystem != "zfs" &&
                        std::count(pseudoTypes.begin(), pseudoTypes.end(), mount.fileSystem) > 0;
  const bool hasDevice = mount.source.starts_with("/dev/") || mount.fileSystem == "zfs";
  return !isPseudo && hasDevice && !mount.device.starts_with(loopMajor) &&
         !mount.source.starts_with("/dev/loop");
}

ByteCount blocksToBytes(unsigned long long blocks, unsigned long long size) {
  ByteCount bytes = 0;
  if (__builtin_mul_overflow(blocks, size, &bytes)) overflowFault("the size of a drive");
  return bytes;
}

}  // namespace

std::vector<Mount> parseMountInfo(std::string_view text) {
  std::vector<Mount> mounts;
  for (const auto line : split(text, '\n')) {
    const auto fields = split(line, ' ');
    const auto dash = std::find(fields.begin(), fields.end(), "-");
    if (dash - fields.begin() < 6 || fields.end() - dash < 3) continue;
    mounts.push_back({std::string(fields[2]), unescaped(fields[3]), unescaped(fields[4]),
                      std::string(dash[1]), unescaped(dash[2])});
  }
  return mounts;
}

std::vector<Mount> driveMounts(const std::vector<Mount>& mounts,
                               const std::vector<std::string>& pseudoTypes) {
  // What is mounted last at a path hides what was mounted there before.
  std::map<std::string, const Mount*> visible;
  for (const auto& mount : mounts) visible[mount.path] = &mount;

  std::vector<Mount> drives;
  if (const auto top = visible.find("/"); top != visible.end()) drives.push_back(*top->second);
  for (const auto& mount : mounts) {
    if (visible[mount.path] != &mount || mount.path == "/" || !isDrive(mount, pseudoTypes))
      continue;
    const auto known = std::find_if(drives.begin(), drives.end(), [&](const Mount& drive) {
      return drive.device == mount.device;
    });
    if (known == drives.end()) {
      drives.push_back(mount);
    } else if (known->root != "/" && mount.root == "/" && known->path != "/") {
      *known = mount;  // The whole file system stands for it, rather than a bound folder of it.
    }
  }
  return drives;
}

std::vector<DriveInfo> linuxDrives() {
  const auto table = readFileIfPossible("/proc/self/mountinfo").value_or("");
  const auto labels = labelsByDevice();
  std::vector<DriveInfo> drives;
  for (const auto& mount : driveMounts(parseMountInfo(table), pseudoFileSystems())) {
    struct statvfs figures {};
    if (::statvfs(mount.path.c_str(), &figures) != 0 || figures.f_blocks == 0) continue;
    const auto label = labels.find(resolved(mount.source).value_or(mount.source));
    const ByteCount free = blocksToBytes(figures.f_bavail, figures.f_frsize);
    drives.push_back(
        {label == labels.end() ? std::string(lastComponent(mount.path)) : label->second, mount.path,
         mount.path == "/", blocksToBytes(figures.f_blocks, figures.f_frsize), free, free});
  }
  return drives;
}

std::string mountPointOf(const std::string& path) {
  const auto table = readFileIfPossible("/proc/self/mountinfo").value_or("");
  std::string best = "/";
  for (const auto& mount : parseMountInfo(table)) {
    if (isAtOrInside(path, mount.path) && mount.path.size() > best.size()) best = mount.path;
  }
  return best;
}

}  // namespace volbrin
