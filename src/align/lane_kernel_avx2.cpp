// The lane kernel on AVX2: eight pairs at once. Compiled with -mavx2.
#include <immintrin.h>

#include "align/lane_kernel.hpp"

namespace {

struct Avx2 {
  static constexpr int kLanes = 8;
  using Reg = __m256i;
  using Mask = __m256i;  // all ones in a lane that is set
  static Reg load(const std::int32_t* p) { return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)); }
  static void store(std::int32_t* p, Reg v) { _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), v); }
  static Reg set1(std::int32_t x) { return _mm256_set1_epi32(x); }
  static Reg add(Reg a, Reg b) { return _mm256_add_epi32(a, b); }
  static Reg sub(Reg a, Reg b) { return _mm256_sub_epi32(a, b); }
  static Mask gt(Reg a, Reg b) { return _mm256_cmpgt_epi32(a, b); }
  static Mask gt_where(Mask m, Reg a, Reg b) { return and_(m, gt(a, b)); }
  static Mask none() { return _mm256_setzero_si256(); }
  static Mask and_(Mask a, Mask b) { return _mm256_and_si256(a, b); }
  static Mask or_(Mask a, Mask b) { return _mm256_or_si256(a, b); }
  static Mask not_(Mask a) { return _mm256_xor_si256(a, _mm256_set1_epi32(-1)); }
  static Mask andnot(Mask a, Mask b) { return _mm256_andnot_si256(a, b); }  // b and not a
  static Reg select(Mask m, Reg ifClear, Reg ifSet) { return _mm256_blendv_epi8(ifClear, ifSet, m); }
  static Mask load_mask(const std::int32_t* p) { return load(p); }
  static void store_mask(std::int32_t* p, Mask m) { store(p, m); }
  static unsigned bits(Mask m) { return static_cast<unsigned>(_mm256_movemask_ps(_mm256_castsi256_ps(m))); }
  static Reg shift_in(Reg v, std::int32_t x) {
    const Reg up = _mm256_permutevar8x32_epi32(v, _mm256_setr_epi32(0, 0, 1, 2, 3, 4, 5, 6));
    return _mm256_blend_epi32(up, _mm256_set1_epi32(x), 1);
  }
  static Mask shift_in_mask(Mask m, bool x) { return shift_in(m, x ? -1 : 0); }
  static Mask lane_is(int k) {
    return _mm256_cmpeq_epi32(_mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7), _mm256_set1_epi32(k));
  }
  static bool lane_set(const std::int32_t* slot, int lane) { return slot[lane] != 0; }
  static Reg sub_where(Mask m, Reg a, Reg b) { return sub(a, and_(b, m)); }
  // A cell entry: the four 8-bit lane masks side by side.
  static void store_entry(unsigned char* at, Mask col, Mask row, Mask rowRef, Mask colRef) {
    at[0] = static_cast<unsigned char>(bits(col));
    at[1] = static_cast<unsigned char>(bits(row));
    at[2] = static_cast<unsigned char>(bits(rowRef));
    at[3] = static_cast<unsigned char>(bits(colRef));
  }
};

#include "align/lane_kernel_body.inc"

}  // namespace

const std::int32_t* lane_sum_avx2(const LaneBatch& batch) {
  return batch.rowSsCode ? lane_sum<Avx2, true>(batch) : lane_sum<Avx2, false>(batch);
}

void band_sum_avx2(const BandBatch& batch) { band_sum<Avx2>(batch); }
