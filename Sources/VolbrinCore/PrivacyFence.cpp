#include "PrivacyFence.hpp"

#include <algorithm>
#include <array>

#include "Paths.hpp"

namespace volbrin {
namespace {

constexpr std::array<std::string_view, 12> guardedNames = {
    "Desktop",
    "Documents",
    "Downloads",
    "Library/Containers",
    "Library/Group Containers",
    "Library/Mail",
    "Library/Messages",
    "Library/Safari",
    "Library/Calendars",
    "Library/Reminders",
    "Library/HomeKit",
    "Pictures/Photos Library.photoslibrary",
};

template <class Registrations, class Test>
bool anyRoot(const Registrations& registrations, Test test) {
  return std::any_of(registrations.begin(), registrations.end(), [&](const auto& registration) {
    return std::any_of(registration.second.begin(), registration.second.end(), test);
  });
}

}  // namespace

PrivacyFence& PrivacyFence::shared() {
  static PrivacyFence fence;
  return fence;
}

std::vector<std::string> PrivacyFence::guardedRoots(std::string_view home) {
  std::vector<std::string> roots;
  roots.reserve(guardedNames.size());
  for (const auto name : guardedNames) roots.push_back(below(home, name));
  return roots;
}

Uuid PrivacyFence::begin(const std::vector<std::string>& roots) {
  const Uuid token = Uuid::random();
  if (!roots.empty()) {
    const std::lock_guard guard(lock_);
    registrations_.emplace(token, roots);
  }
  return token;
}

void PrivacyFence::end(const Uuid& token) {
  const std::lock_guard guard(lock_);
  registrations_.erase(token);
}

std::vector<std::string> PrivacyFence::active() const {
  const std::lock_guard guard(lock_);
  std::vector<std::string> roots;
  for (const auto& [token, more] : registrations_) {
    roots.insert(roots.end(), more.begin(), more.end());
  }
  return roots;
}

bool PrivacyFence::blocks(std::string_view path) const {
  const std::lock_guard guard(lock_);
  return anyRoot(registrations_, [&](const auto& root) { return isInside(path, root); });
}

bool PrivacyFence::isFenced(std::string_view path) const {
  const std::lock_guard guard(lock_);
  return anyRoot(registrations_, [&](const auto& root) { return isAtOrInside(path, root); });
}

}  // namespace volbrin
