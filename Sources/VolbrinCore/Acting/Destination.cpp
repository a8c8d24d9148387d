#include "Destination.hpp"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "../Files.hpp"
#include "../Paths.hpp"

namespace volbrin {
namespace {

[[noreturn]] void raise(int error, const std::string& path) {
  throw std::system_error(error, std::generic_category(), path);
}

}  // namespace

Destination::Destination(const std::string& path) : name_(lastComponent(path)) {
  std::string folder(parentFolder(path));
  auto real = resolved(folder);
  while (!real && folder != "/") {
    missing_.emplace_back(lastComponent(folder));
    folder = parentFolder(folder);
    real = resolved(folder);
  }
  std::reverse(missing_.begin(), missing_.end());
  if (!real) raise(errno, folder);
  anchor_ = *real;
  const auto stat = statPath(anchor_);
  if (!stat) raise(errno, anchor_);
  device_ = stat->device;
  inode_ = stat->inode;
}

std::string Destination::real() const {
  std::string path = anchor_;
  for (const auto& name : missing_) path = below(path, name);
  return below(path, name_);
}

HeldItem Destination::prepare() const {
  HeldItem item{holdFolder(anchor_), name_};
  if (!item.folder) raise(errno, anchor_);
  const auto stat = statOpen(item.folder);
  if (!stat || stat->device != device_ || stat->inode != inode_) raise(ESTALE, anchor_);
  for (const auto& name : missing_) item.folder = makeFolderBelow(item.folder, name, 0777);
  return item;
}

bool isTaken(const std::string& path) { return exists(path) || isSymlink(path); }

}  // namespace volbrin
