#include <arm_neon.h>

#include "Sha256Rounds.hpp"

namespace volbrin {
namespace {

/// With the Arm architecture's SHA-2 instructions, which every Mac with an Arm processor has: Arm
/// Architecture Reference Manual for A-profile, SHA256H, SHA256H2, SHA256SU0 and SHA256SU1.
class State {
 public:
  VOLBRIN_INLINE explicit State(const Sha256Lane& lane)
      : abcd_(vld1q_u32(lane.words)), efgh_(vld1q_u32(lane.words + 4)) {}

  VOLBRIN_INLINE void store(Sha256Lane& lane) const {
    vst1q_u32(lane.words, abcd_);
    vst1q_u32(lane.words + 4, efgh_);
  }

  VOLBRIN_INLINE void begin(const std::byte* block) {
    // The message's words are big-endian.
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(block);
    for (int i = 0; i < 4; ++i) {
      message_[i] = vreinterpretq_u32_u8(vrev32q_u8(vld1q_u8(bytes + i * 16)));
    }
    abcdBefore_ = abcd_;
    efghBefore_ = efgh_;
  }

  /// Four rounds, and the words of the message for the same place 16 rounds later.
  template <std::size_t Quad>
  VOLBRIN_INLINE void fourRounds() {
    uint32x4_t& now = message_[Quad % 4];
    const uint32x4_t words = vaddq_u32(now, vld1q_u32(sha256Constants + 4 * Quad));
    if constexpr (Quad < 12) {
      now = vsha256su1q_u32(vsha256su0q_u32(now, message_[(Quad + 1) % 4]),
                            message_[(Quad + 2) % 4], message_[(Quad + 3) % 4]);
    }
    const uint32x4_t abcd = abcd_;
    abcd_ = vsha256hq_u32(abcd, efgh_, words);
    efgh_ = vsha256h2q_u32(efgh_, abcd, words);
  }

  VOLBRIN_INLINE void finish() {
    abcd_ = vaddq_u32(abcd_, abcdBefore_);
    efgh_ = vaddq_u32(efgh_, efghBefore_);
  }

 private:
  uint32x4_t abcd_, efgh_, abcdBefore_, efghBefore_;
  uint32x4_t message_[4];
};

}  // namespace

std::size_t sha256Lanes() { return 3; }

void addSha256Blocks(Sha256Lane* const* lanes, std::size_t count, std::size_t blocks) {
  processor::addSha256Blocks<State>(lanes, count, blocks);
}

}  // namespace volbrin
