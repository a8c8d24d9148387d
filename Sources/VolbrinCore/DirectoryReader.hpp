#pragma once

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Bytes.hpp"
#include "Descriptor.hpp"

/// Reading folders by handle, as fast as the system allows: what the traversal stands on. One
/// source file per system implements it, in Platform/. Nothing here follows a link but at `path`
/// given as a whole, and nothing raises: a refusal is an empty answer with the system's number in
/// errno.
namespace volbrin {

enum class EntryKind : std::uint8_t { unknown, folder, file, link, other };

/// What one metadata call tells of an entry.
struct EntryStat {
  EntryKind kind = EntryKind::unknown;
  std::uint32_t links = 0;   ///< names that the item has (hard links)
  std::uint64_t device = 0;  ///< `device` and `inode` together identify the item
  std::uint64_t inode = 0;
  ByteCount allocatedBytes = 0;  ///< what it takes on disk: its blocks times `statBlockBytes`
  ByteCount size = 0;            ///< logical size
  std::timespec modified{};
  bool isDataless = false;  ///< its contents are only in a cloud (macOS: SF_DATALESS, stat(2))
};

/// Opens a folder for reading its entries. A link in the place of the last component is refused.
/// The folder's time of last access is left alone where the system allows.
[[nodiscard]] Descriptor openFolder(const std::string& path);

enum class MountPoints { cross, refuse };

/// Opens the folder `name` of `parent`. A link is refused (errno ELOOP or ENOTDIR). With
/// `MountPoints::refuse` a folder on which something is mounted is refused with EXDEV, unopened.
[[nodiscard]] Descriptor openFolderBelow(const Descriptor& parent, const char* name,
                                         MountPoints mounts);

/// Opens a folder by its path below an open one, however long. A link anywhere on the way is
/// refused. An empty path opens the folder itself anew.
[[nodiscard]] Descriptor openPathBelow(const Descriptor& folder, const std::string& relative);

/// Opens the folder at `path`, absolute and of any length, to act on what is in it: it may be one
/// whose entries this user may not list. A link anywhere on the way is refused.
[[nodiscard]] Descriptor holdFolder(const std::string& path);
/// The same for the folder `name` of `parent`, which may lie on another drive.
[[nodiscard]] Descriptor holdFolderBelow(const Descriptor& parent, const char* name);

/// Opens a file for reading by its path below an open folder, however long. A link anywhere on the
/// way is refused, and nothing waits for a pipe's other end. What is opened may be no regular file.
[[nodiscard]] Descriptor openFileBelow(const Descriptor& folder, const std::string& relative);

/// The record of the item at `path`, links not followed.
[[nodiscard]] std::optional<EntryStat> statPath(const std::string& path);
/// The record of the entry `name` of `folder`, links not followed, nothing mounted by asking.
[[nodiscard]] std::optional<EntryStat> statBelow(const Descriptor& folder, const char* name);
/// The record of an open folder.
[[nodiscard]] std::optional<EntryStat> statOpen(const Descriptor& folder);

/// An entry as a folder lists it.
struct ListedEntry {
  const char* name;  ///< ends with NUL; valid until the next `fill`
  EntryKind kind;    ///< `unknown` where the file system doesn't say
  /// Its record, where the system lists folders together with the records of what is in them; valid
  /// until the next `next`. Null where it has to be asked for.
  const EntryStat* stat = nullptr;
};

/// Reads a folder batch by batch into a buffer of its own; one buffer serves any number of folders,
/// one after the other.
class DirectoryBuffer {
 public:
  DirectoryBuffer();
  ~DirectoryBuffer();
  DirectoryBuffer(const DirectoryBuffer&) = delete;
  DirectoryBuffer& operator=(const DirectoryBuffer&) = delete;

  enum class Fill { batch, end, failed };

  /// Reads the next batch of `folder`'s entries.
  [[nodiscard]] Fill fill(const Descriptor& folder);

  /// The next entry of the batch, "." and ".." left out; absent at the batch's end.
  [[nodiscard]] std::optional<ListedEntry> next();

 private:
  struct State;  ///< each system's own

  std::unique_ptr<State> state_;
};

}  // namespace volbrin
