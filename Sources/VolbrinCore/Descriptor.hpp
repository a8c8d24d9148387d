#pragma once

#include <unistd.h>

#include <utility>

namespace volbrin {

/// Owns one file descriptor and closes it. False when it holds none.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { close(); }

  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      close();
      number_ = std::exchange(other.number_, -1);
    }
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  explicit operator bool() const { return number_ >= 0; }
  [[nodiscard]] int get() const { return number_; }

  /// Gives the descriptor up to the caller, who closes it.
  int release() { return std::exchange(number_, -1); }

  void close() {
    if (number_ >= 0) ::close(number_);
    number_ = -1;
  }

 private:
  int number_ = -1;
};

}  // namespace volbrin
