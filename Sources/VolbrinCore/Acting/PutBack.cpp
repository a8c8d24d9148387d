#include "PutBack.hpp"

#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <stdexcept>
#include <system_error>

#include "../Compare.hpp"
#include "../Paths.hpp"
#include "../System.hpp"
#include "RemoveTree.hpp"
#include "Target.hpp"
#include "TreeSnapshot.hpp"

namespace volbrin {
namespace {

/// A free name beside `item`, for what stands there only for a moment.
std::string passingName(const HeldItem& item) {
  for (int number = 1;; ++number) {
    std::string name = ".volbrin-" + std::to_string(number);
    if (!statBelow(item.folder, name.c_str())) return name;
  }
}

std::optional<std::string> linkTarget(const HeldItem& item) {
  std::array<char, PATH_MAX> text{};
  const auto length = ::readlinkat(item.folder.get(), item.name.c_str(), text.data(), text.size());
  // One that fills the buffer may be cut.
  if (length < 0 || length == static_cast<ssize_t>(text.size())) return std::nullopt;
  return std::string(text.data(), static_cast<std::size_t>(length));
}

void removeQuietly(const HeldItem& item) {
  try {
    removeTree(item);
  } catch (const std::exception&) {
    // What is left takes space and nothing else.
  }
}

/// By a proved copy, which takes the place when it is whole.
bool putBackAcrossDrives(const std::string& present, const std::string& old,
                         const HeldItem& oldPlace, const Mac& mac, CopyObserver* observer) {
  // From before the copy: what changes later isn't in it.
  const TreeSnapshot snapshot(present);
  HeldItem copy = holdItem(old);
  copy.name = passingName(oldPlace);
  const auto copyPath = below(parentFolder(old), copy.name);
  const auto fault = mac.platform().copyTree(present, copyPath, observer);
  if (fault && !fault->hasStarted) throw std::runtime_error(fault->what);
  try {
    if (fault) throw std::runtime_error(fault->what);
    const auto diff = compareCopies(present, copyPath, CompareBy::contentsOnDrive);
    if (!diff || !diff->isProof()) throw std::runtime_error("the copy doesn't match");
    moveExclusively(copy, oldPlace);
  } catch (const std::exception&) {
    removeQuietly(copy);
    throw;
  }
  syncFolder(oldPlace.folder);
  return snapshot.removeUnchanged();
}

}  // namespace

bool putBack(const std::string& present, const std::string& old, const Mac& mac,
             CopyObserver* observer) {
  const HeldItem item = holdItem(present);
  const HeldItem place = prepareTarget(old);
  bool isAllBack = true;
  if (renameExclusively(item.folder, item.name, place.folder, place.name)) {
    syncFolder(place.folder);
  } else if (errno == EXDEV) {
    isAllBack = putBackAcrossDrives(present, old, place, mac, observer);
  } else {
    throw std::system_error(errno, std::generic_category(), old);
  }
  if (isAllBack) mac.platform().forgetTrashed(present);
  return isAllBack;
}

std::optional<std::string> linkTarget(const std::string& path) {
  try {
    return linkTarget(holdItem(path));
  } catch (const std::system_error&) {
    return std::nullopt;
  }
}

bool removeLink(const std::string& path, const std::string& target) {
  const HeldItem item = holdItem(path);
  HeldItem aside = holdItem(path);
  aside.name = passingName(item);
  // Out of the way first: what somebody puts in its place meanwhile is then left alone.
  moveExclusively(item, aside);
  if (linkTarget(aside) == target) {
    if (::unlinkat(aside.folder.get(), aside.name.c_str(), 0) == 0) return true;
    const int error = errno;
    moveExclusively(aside, item);
    throw std::system_error(error, std::generic_category(), path);
  }
  moveExclusively(aside, item);
  return false;
}

}  // namespace volbrin
