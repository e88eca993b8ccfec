// The lane kernel on SSE4.1: four pairs at once. Compiled with -msse4.1.
#include <immintrin.h>

#include "align/lane_kernel.hpp"

namespace {

struct Sse41 {
  static constexpr int kLanes = 4;
  using Reg = __m128i;
  using Mask = __m128i;  // all ones in a lane that is set
  static Reg load(const std::int32_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); }
  static void store(std::int32_t* p, Reg v) { _mm_storeu_si128(reinterpret_cast<__m128i*>(p), v); }
  static Reg set1(std::int32_t x) { return _mm_set1_epi32(x); }
  static Reg add(Reg a, Reg b) { return _mm_add_epi32(a, b); }
  static Reg sub(Reg a, Reg b) { return _mm_sub_epi32(a, b); }
  static Mask gt(Reg a, Reg b) { return _mm_cmpgt_epi32(a, b); }
  static Mask gt_where(Mask m, Reg a, Reg b) { return and_(m, gt(a, b)); }
  static Mask none() { return _mm_setzero_si128(); }
  static Mask and_(Mask a, Mask b) { return _mm_and_si128(a, b); }
  static Mask or_(Mask a, Mask b) { return _mm_or_si128(a, b); }
  static Mask not_(Mask a) { return _mm_xor_si128(a, _mm_set1_epi32(-1)); }
  static Mask andnot(Mask a, Mask b) { return _mm_andnot_si128(a, b); }  // b and not a
  static Reg select(Mask m, Reg ifClear, Reg ifSet) { return _mm_blendv_epi8(ifClear, ifSet, m); }
  static Mask load_mask(const std::int32_t* p) { return load(p); }
  static void store_mask(std::int32_t* p, Mask m) { store(p, m); }
  static unsigned bits(Mask m) { return static_cast<unsigned>(_mm_movemask_ps(_mm_castsi128_ps(m))); }
  static Reg shift_in(Reg v, std::int32_t x) { return _mm_alignr_epi8(v, _mm_set1_epi32(x), 12); }
  static Mask shift_in_mask(Mask m, bool x) { return shift_in(m, x ? -1 : 0); }
  static Mask lane_is(int k) { return _mm_cmpeq_epi32(_mm_setr_epi32(0, 1, 2, 3), _mm_set1_epi32(k)); }
  static bool lane_set(const std::int32_t* slot, int lane) { return slot[lane] != 0; }
  static Reg sub_where(Mask m, Reg a, Reg b) { return sub(a, and_(b, m)); }
  // A cell entry: four 4-bit fields packed into two bytes, little-endian.
  static void store_entry(unsigned char* at, Mask col, Mask row, Mask rowRef, Mask colRef) {
    at[0] = static_cast<unsigned char>(bits(col) | (bits(row) << 4));
    at[1] = static_cast<unsigned char>(bits(rowRef) | (bits(colRef) << 4));
  }
};

#include "align/lane_kernel_body.inc"

}  // namespace

const std::int32_t* lane_sum_sse41(const LaneBatch& batch) {
  return batch.rowSsCode ? lane_sum<Sse41, true>(batch) : lane_sum<Sse41, false>(batch);
}

void band_sum_sse41(const BandBatch& batch) { band_sum<Sse41>(batch); }
