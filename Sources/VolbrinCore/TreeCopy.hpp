#pragma once

#include <optional>
#include <string>
#include <system_error>

#include "Bytes.hpp"

namespace volbrin {

/// Hears how a copy goes on, and may end it.
class CopyObserver {
 public:
  virtual ~CopyObserver() = default;
  /// The copy turns to a file; its path below what is copied.
  virtual void copying(const std::string& path) = 0;
  /// So many bytes more have been copied.
  virtual void copied(ByteCount bytes) = 0;
  /// Asked often: whether the copy shall end where it is.
  [[nodiscard]] virtual bool isStopped() const = 0;
};

/// Why a copy isn't whole.
struct CopyFault {
  bool hasStarted = false;  ///< something stands at the target, and stays there
  std::string what;         ///< the system's words, with the path in question
};

/// Copies the file, link or folder at `source` to `target`, which must not exist, in a folder that
/// does: nothing is ever merged into what is there or appears meanwhile. Links in the folders above
/// either are refused. Keeps contents with their holes, links as links, hard links within the tree,
/// modes, owners, extended attributes with the access lists in them, and times, as far as the
/// target's file system and the user's rights allow; contents always. Pipes, sockets and devices
/// are refused before anything is copied. When it answers, all of it is on the target's drive.
/// Absent when the copy is whole. Each system's own source file has it.
[[nodiscard]] std::optional<CopyFault> copyTree(const std::string& source,
                                                const std::string& target, CopyObserver* observer);

}  // namespace volbrin
