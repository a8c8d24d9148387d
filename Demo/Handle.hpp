#pragma once

#include <unistd.h>

#include <utility>

namespace volbrin::demo {

/// Owns one file descriptor. -1 means none.
class Handle {
 public:
  Handle() = default;
  explicit Handle(int fd) : fd_(fd) {}
  Handle(Handle&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() {
    if (fd_ >= 0) ::close(fd_);
  }

  [[nodiscard]] int get() const { return fd_; }
  [[nodiscard]] bool isOpen() const { return fd_ >= 0; }

  /// Gives the descriptor up to the caller, who closes it.
  [[nodiscard]] int release() { return std::exchange(fd_, -1); }

 private:
  int fd_ = -1;
};

}  // namespace volbrin::demo
