#pragma once

#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Uuid.hpp"

namespace volbrin {

/// What may not even be looked at for now. macOS asks the user before an app first reaches into
/// certain folders; while a fence is up, every file function of the process keeps out of its roots,
/// on every thread. Process-wide on purpose: the file functions have no context to receive it
/// through.
class PrivacyFence {
 public:
  [[nodiscard]] static PrivacyFence& shared();

  /// The folders that macOS guards with a question, for the user whose home is `home`.
  [[nodiscard]] static std::vector<std::string> guardedRoots(std::string_view home);

  /// Puts up a fence around `roots`, beside those that stand; `end` of the token takes it down. An
  /// empty list registers nothing, and `end` of its token is harmless.
  [[nodiscard]] Uuid begin(const std::vector<std::string>& roots);
  void end(const Uuid& token);

  /// All roots now live, with repeats.
  [[nodiscard]] std::vector<std::string> active() const;

  /// Whether `path` lies strictly inside a live root. The root itself stays visible, so that a scan
  /// can tell that it is there.
  [[nodiscard]] bool blocks(std::string_view path) const;

  /// Whether `path` is a live root or lies inside one: its contents may not be read.
  [[nodiscard]] bool isFenced(std::string_view path) const;

 private:
  mutable std::mutex lock_;  ///< Held only to copy or compare, never across a system call.
  std::map<Uuid, std::vector<std::string>> registrations_;
};

/// A fence that stands as long as this value lives.
class FenceGuard {
 public:
  explicit FenceGuard(const std::vector<std::string>& roots)
      : token_(PrivacyFence::shared().begin(roots)) {}
  ~FenceGuard() { PrivacyFence::shared().end(token_); }
  FenceGuard(const FenceGuard&) = delete;
  FenceGuard& operator=(const FenceGuard&) = delete;

 private:
  Uuid token_;
};

}  // namespace volbrin
