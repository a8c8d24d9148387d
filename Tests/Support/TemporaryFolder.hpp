#pragma once

#include <string>
#include <string_view>

namespace volbrin::test {

/// A new empty folder, gone with this value. Its path has its links resolved.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  /// `path()` + "/" + `relative`.
  [[nodiscard]] std::string at(std::string_view relative) const;

  /// Each makes what it names, with the folders above it, and returns its full path.
  std::string folder(std::string_view relative) const;
  /// A file with `contents`.
  std::string file(std::string_view relative, std::string_view contents = "") const;
  /// A file of `bytes` bytes that really takes them on disk.
  std::string fileOfSize(std::string_view relative, std::size_t bytes) const;
  /// A symbolic link that holds `target` as it stands.
  std::string link(std::string_view relative, std::string_view target) const;

 private:
  std::string path_;
};

}  // namespace volbrin::test
