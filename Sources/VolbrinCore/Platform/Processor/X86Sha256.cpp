#include <cpuid.h>
#include <immintrin.h>

#include "Sha256Rounds.hpp"

namespace volbrin {
namespace {

const __m128i* vectorAt(const void* bytes) { return static_cast<const __m128i*>(bytes); }

/// With Intel's SHA extensions: Intel 64 and IA-32 Architectures Software Developer's Manual,
/// volume 2, SHA256RNDS2, SHA256MSG1 and SHA256MSG2. The instructions want the hash as the words
/// A, B, E, F and C, D, G, H.
class State {
 public:
  VOLBRIN_INLINE explicit State(const Sha256Lane& lane) {
    const __m128i cdab = _mm_shuffle_epi32(_mm_loadu_si128(vectorAt(lane.words)), 0xB1);
    const __m128i efgh = _mm_shuffle_epi32(_mm_loadu_si128(vectorAt(lane.words + 4)), 0x1B);
    abef_ = _mm_alignr_epi8(cdab, efgh, 8);
    cdgh_ = _mm_blend_epi16(efgh, cdab, 0xF0);
  }

  VOLBRIN_INLINE void store(Sha256Lane& lane) const {
    const __m128i feba = _mm_shuffle_epi32(abef_, 0x1B);
    const __m128i dchg = _mm_shuffle_epi32(cdgh_, 0xB1);
    auto* words = reinterpret_cast<__m128i*>(lane.words);
    _mm_storeu_si128(words, _mm_blend_epi16(feba, dchg, 0xF0));
    _mm_storeu_si128(words + 1, _mm_alignr_epi8(dchg, feba, 8));
  }

  VOLBRIN_INLINE void begin(const std::byte* block) {
    // The message's words are big-endian.
    const __m128i order = _mm_set_epi64x(0x0c0d0e0f08090a0b, 0x0405060700010203);
    const auto* words = vectorAt(block);
    for (int i = 0; i < 4; ++i) {
      message_[i] = _mm_shuffle_epi8(_mm_loadu_si128(words + i), order);
    }
    abefBefore_ = abef_;
    cdghBefore_ = cdgh_;
  }

  /// Four rounds, and the words of the message for the same place 16 rounds later.
  template <std::size_t Quad>
  VOLBRIN_INLINE void fourRounds() {
    __m128i& now = message_[Quad % 4];
    const __m128i constants = _mm_load_si128(vectorAt(sha256Constants + 4 * Quad));
    const __m128i words = _mm_add_epi32(now, constants);
    cdgh_ = _mm_sha256rnds2_epu32(cdgh_, abef_, words);
    if constexpr (Quad < 12) {
      const __m128i last = message_[(Quad + 3) % 4];
      const __m128i early = _mm_sha256msg1_epu32(now, message_[(Quad + 1) % 4]);
      const __m128i middle = _mm_alignr_epi8(last, message_[(Quad + 2) % 4], 4);
      now = _mm_sha256msg2_epu32(_mm_add_epi32(early, middle), last);
    }
    abef_ = _mm_sha256rnds2_epu32(abef_, cdgh_, _mm_shuffle_epi32(words, 0x0E));
  }

  VOLBRIN_INLINE void finish() {
    abef_ = _mm_add_epi32(abef_, abefBefore_);
    cdgh_ = _mm_add_epi32(cdgh_, cdghBefore_);
  }

 private:
  __m128i abef_, cdgh_, abefBefore_, cdghBefore_;
  __m128i message_[4];
};

/// CPUID: leaf 1 has SSSE3 and SSE4.1 in ECX, leaf 7 has SHA in EBX.
bool hasInstructions() {
  unsigned a = 0;
  unsigned b = 0;
  unsigned c = 0;
  unsigned d = 0;
  if (__get_cpuid(1, &a, &b, &c, &d) == 0) return false;
  const bool hasShuffles = (c & bit_SSSE3) != 0 && (c & bit_SSE4_1) != 0;
  if (__get_cpuid_count(7, 0, &a, &b, &c, &d) == 0) return false;
  return hasShuffles && (b & bit_SHA) != 0;
}

}  // namespace

std::size_t sha256Lanes() {
  // 16 registers hold two streams; a third is slower or hardly faster, as the compiler has it.
  static const std::size_t lanes = hasInstructions() ? 2 : 0;
  return lanes;
}

void addSha256Blocks(Sha256Lane* const* lanes, std::size_t count, std::size_t blocks) {
  processor::addSha256Blocks<State>(lanes, count, blocks);
}

}  // namespace volbrin
