#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "Descriptor.hpp"
#include "System.hpp"

namespace volbrin {

/// A regular file that is read from its beginning to its end, once.
class FileStream {
 public:
  /// The most that one read takes, in bytes.
  static constexpr std::size_t mostPerRead = 1'048'576;

  /// The file at `path`, links followed. What is blocked, no regular file or not to be opened gives
  /// a stream that isn't open.
  explicit FileStream(const std::string& path);
  /// The file at `relative` below an open folder, links refused.
  FileStream(const Descriptor& folder, const std::string& relative);

  /// Has the file read from its drive and not from what memory holds of it, and leaves no more than
  /// some megabytes there: a big file that is read once doesn't drive out what others keep. Before
  /// the first read.
  void readFromDrive();

  [[nodiscard]] bool isOpen() const { return static_cast<bool>(file_); }

  /// Fills `piece` from where the last read ended; returns how much of it is filled, less than all
  /// only at the end. A failed read ends the file; see `hasFailed`.
  [[nodiscard]] std::size_t fill(std::span<std::byte> piece);

  /// Whether a read has failed: what was delivered may not be all there is.
  [[nodiscard]] bool hasFailed() const { return hasFailed_; }

 private:
  explicit FileStream(Descriptor file);

  void dropBehind();

  Descriptor file_;
  bool hasFailed_ = false;
  bool isFromDrive_ = false;
  ByteCount read_ = 0;     ///< bytes delivered so far
  ByteCount dropped_ = 0;  ///< of those, bytes that memory needn't hold any more
};

}  // namespace volbrin
