#include "FileDigest.hpp"

#include <algorithm>
#include <atomic>
#include <memory>
#include <numeric>

#include "FileStream.hpp"
#include "Files.hpp"
#include "Parallel.hpp"
#include "Sha256.hpp"
#include "Sha256Lanes.hpp"

namespace volbrin {
namespace {

/// Pieces of this size stay in a core's second-level cache between reading and hashing.
constexpr std::size_t pieceBytes = 131'072;
static_assert(pieceBytes % sha256BlockBytes == 0);

/// One file on its way through a lane.
class FileLane {
 public:
  FileLane(FileStream file, std::size_t position)
      : file_(std::move(file)), position_(position), buffer_(new std::byte[bufferBytes]) {
    refill();
  }

  [[nodiscard]] std::size_t position() const { return position_; }
  [[nodiscard]] Sha256Lane& lane() { return lane_; }
  [[nodiscard]] std::size_t blocksLeft() const {
    return static_cast<std::size_t>(end_ - lane_.next) / sha256BlockBytes;
  }

  /// Makes sure that there are blocks to hash; false when all of the file is hashed.
  bool refill() {
    if (lane_.next != end_) return true;
    if (isPadded_) return false;
    std::size_t count = file_.fill({buffer_.get(), pieceBytes});
    bytes_ += count;
    if (count < pieceBytes) count += pad(count);
    lane_.next = buffer_.get();
    end_ = buffer_.get() + count;
    return true;
  }

  [[nodiscard]] std::string digest() const { return sha256Text(lane_.words); }

 private:
  /// Room for what follows the last byte: at most a block and nine bytes.
  static constexpr std::size_t bufferBytes = pieceBytes + 2 * sha256BlockBytes;

  /// Writes what belongs behind a message's last byte (FIPS 180-4, 5.1.1): a bit, zeros to the end
  /// of a block less eight bytes, and the message's length in bits.
  std::size_t pad(std::size_t at) {
    std::byte* const tail = buffer_.get() + at;
    const std::size_t used = at % sha256BlockBytes + 1 + sizeof(bytes_);
    const std::size_t zeros = (2 * sha256BlockBytes - used) % sha256BlockBytes;
    tail[0] = std::byte{0x80};
    std::fill_n(tail + 1, zeros, std::byte{});
    for (std::size_t i = 0; i < sizeof(bytes_); ++i) {
      tail[1 + zeros + i] = static_cast<std::byte>(bytes_ * 8 >> (56 - 8 * i));
    }
    isPadded_ = true;
    return 1 + zeros + sizeof(bytes_);
  }

  FileStream file_;
  std::size_t position_;
  std::unique_ptr<std::byte[]> buffer_;
  Sha256Lane lane_;
  const std::byte* end_ = nullptr;
  std::uint64_t bytes_ = 0;
  bool isPadded_ = false;
};

/// The files to hash, for all threads; each takes the next one when it has a lane free.
class DigestQueue {
 public:
  DigestQueue(const std::vector<std::string>& paths, ReadFrom from) : paths_(paths), from_(from) {
    std::vector<ByteCount> sizes;
    for (const auto& path : paths) sizes.push_back(sizeOf(path).value_or(0));
    order_.resize(paths.size());
    std::iota(order_.begin(), order_.end(), 0U);
    // The biggest first, so that no thread is left with one at the end.
    std::stable_sort(order_.begin(), order_.end(),
                     [&](std::size_t a, std::size_t b) { return sizes[a] > sizes[b]; });
    digests.resize(paths.size());
  }

  /// The next file that can be opened; absent when there is none.
  std::optional<FileLane> next() {
    for (std::size_t at = next_++; at < order_.size(); at = next_++) {
      FileStream file(paths_[order_[at]]);
      if (!file.isOpen()) continue;
      if (from_ == ReadFrom::drive) file.readFromDrive();
      return FileLane(std::move(file), order_[at]);
    }
    return std::nullopt;
  }

  std::vector<std::optional<std::string>> digests;

 private:
  const std::vector<std::string>& paths_;
  ReadFrom from_;
  std::vector<std::size_t> order_;
  std::atomic<std::size_t> next_ = 0;
};

/// One thread's work: files side by side in `width` lanes until the queue is empty.
void hashSideBySide(DigestQueue& queue, std::size_t width) {
  std::vector<FileLane> lanes;
  while (true) {
    while (lanes.size() < width) {
      auto lane = queue.next();
      if (!lane) break;
      lanes.push_back(std::move(*lane));
    }
    if (lanes.empty()) return;
    Sha256Lane* together[mostSha256Lanes];
    std::size_t blocks = lanes.front().blocksLeft();
    for (std::size_t i = 0; i < lanes.size(); ++i) {
      together[i] = &lanes[i].lane();
      blocks = std::min(blocks, lanes[i].blocksLeft());
    }
    addSha256Blocks(together, lanes.size(), blocks);
    for (auto lane = lanes.begin(); lane != lanes.end();) {
      if (lane->refill()) {
        ++lane;
      } else {
        queue.digests[lane->position()] = lane->digest();
        lane = lanes.erase(lane);
      }
    }
  }
}

}  // namespace

std::optional<std::string> sha256Of(const std::string& path, ReadFrom from) {
  FileStream file(path);
  if (!file.isOpen()) return std::nullopt;
  if (from == ReadFrom::drive) file.readFromDrive();
  Sha256 hash;
  thread_local const auto buffer = std::make_unique<std::byte[]>(pieceBytes);
  std::size_t count = pieceBytes;
  while (count == pieceBytes) {
    count = file.fill({buffer.get(), pieceBytes});
    hash.add({buffer.get(), count});
  }
  return hash.digest();
}

std::vector<std::optional<std::string>> sha256OfEach(const std::vector<std::string>& paths,
                                                     ReadFrom from) {
  if (sha256Lanes() == 0) {
    return parallelMap(paths, [from](const std::string& path) { return sha256Of(path, from); });
  }
  // Few files go to as many cores as possible first, and side by side on each only then.
  const std::size_t threads = std::min(HelperThread::width(), paths.size());
  const std::size_t perThread = (paths.size() + threads - 1) / std::max<std::size_t>(threads, 1);
  const std::size_t width = std::min(sha256Lanes(), perThread);
  DigestQueue queue(paths, from);
  const std::vector<std::size_t> widths(threads, width);
  (void)parallelMap(widths, [&](std::size_t lanes) {
    hashSideBySide(queue, lanes);
    return true;
  });
  return std::move(queue.digests);
}

}  // namespace volbrin
