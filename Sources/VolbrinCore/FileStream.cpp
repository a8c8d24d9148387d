#include "FileStream.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "DirectoryReader.hpp"
#include "PrivacyFence.hpp"

namespace volbrin {
namespace {

/// Smaller steps cost calls; larger ones memory.
constexpr ByteCount bytesPerDrop = 8 << 20;

Descriptor openWhole(const std::string& path) {
  if (PrivacyFence::shared().blocks(path) || path.find('\0') != std::string::npos) return {};
  // O_NONBLOCK: a pipe planted under the file's name must not hold the open up.
  return Descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
}

}  // namespace

FileStream::FileStream(const std::string& path) : FileStream(openWhole(path)) {}

FileStream::FileStream(const Descriptor& folder, const std::string& relative)
    : FileStream(openFileBelow(folder, relative)) {}

FileStream::FileStream(Descriptor file) {
  struct stat status {};
  if (file && ::fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode)) {
    file_ = std::move(file);
  }
}

void FileStream::readFromDrive() {
  isFromDrive_ = true;
  dropFromMemory(file_, 0, 0);
}

void FileStream::dropBehind() {
  if (!isFromDrive_ || read_ - dropped_ < bytesPerDrop) return;
  dropFromMemory(file_, dropped_, read_ - dropped_);
  dropped_ = read_;
}

std::size_t FileStream::fill(std::span<std::byte> piece) {
  std::size_t filled = 0;
  while (filled < piece.size()) {
    const auto count =
        ::read(file_.get(), piece.data() + filled, std::min(piece.size() - filled, mostPerRead));
    if (count < 0 && errno == EINTR) continue;
    hasFailed_ = hasFailed_ || count < 0;
    if (count <= 0) break;
    filled += static_cast<std::size_t>(count);
  }
  read_ += static_cast<ByteCount>(filled);
  dropBehind();
  return filled;
}

}  // namespace volbrin
