#include "WriteBehind.hpp"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>

namespace volbrin {
namespace {

constexpr off_t pieceBytes = 8 << 20;
/// Pieces that are on their way at a time: enough to keep a fast drive's queue filled.
constexpr off_t piecesOnTheWay = 4;

}  // namespace

bool WriteBehind::wrote(off_t begin, off_t end) {
  started_ = std::max(started_, begin - begin % pieceBytes);
  for (; end - started_ >= pieceBytes; started_ += pieceBytes) {
    // sync_file_range(2) starts and waits, but brings no names and no sizes to the drive: the sync
    // at the end is still needed. A file system that doesn't know it leaves all to that.
    ::sync_file_range(file_.get(), started_, pieceBytes, SYNC_FILE_RANGE_WRITE);
    const off_t oldest = started_ - piecesOnTheWay * pieceBytes;
    if (oldest >= 0 && !letGo(oldest)) return false;
  }
  return true;
}

bool WriteBehind::letGo(off_t at) const {
  constexpr unsigned wholly =
      SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
  if (::sync_file_range(file_.get(), at, pieceBytes, wholly) != 0) {
    return errno == ENOSYS || errno == EINVAL || errno == ESPIPE || errno == EOPNOTSUPP;
  }
  ::posix_fadvise(file_.get(), at, pieceBytes, POSIX_FADV_DONTNEED);
  return true;
}

}  // namespace volbrin
