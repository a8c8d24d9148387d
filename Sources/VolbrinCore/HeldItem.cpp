#include "HeldItem.hpp"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "Paths.hpp"
#include "System.hpp"

namespace volbrin {
namespace {

[[noreturn]] void raise(const std::string& path) {
  throw std::system_error(errno, std::generic_category(), path);
}

}  // namespace

HeldItem holdItem(const std::string& path) {
  if (!path.starts_with('/') || standardized(path) != path) {
    throw std::system_error(EINVAL, std::generic_category(), path);
  }
  HeldItem item{holdFolder(std::string(parentFolder(path))), std::string(lastComponent(path))};
  if (!item.folder) raise(path);
  return item;
}

Descriptor makeFolderBelow(const Descriptor& parent, const std::string& name, unsigned mode) {
  if (::mkdirat(parent.get(), name.c_str(), mode) != 0 && errno != EEXIST) raise(name);
  Descriptor folder = holdFolderBelow(parent, name.c_str());
  if (!folder) raise(name);
  return folder;
}

void moveExclusively(const HeldItem& from, const HeldItem& to) {
  if (!renameExclusively(from.folder, from.name, to.folder, to.name)) raise(from.name);
}

}  // namespace volbrin
