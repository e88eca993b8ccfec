// The lane kernel on AVX-512 (foundation instructions only): sixteen pairs at
// once. Compiled with -mavx512f.
#include <immintrin.h>

#include <cstring>

#include "align/lane_kernel.hpp"

namespace {

struct Avx512 {
  static constexpr int kLanes = 16;
  using Reg = __m512i;
  using Mask = __mmask16;
  static Reg load(const std::int32_t* p) { return _mm512_loadu_si512(p); }
  static void store(std::int32_t* p, Reg v) { _mm512_storeu_si512(p, v); }
  static Reg set1(std::int32_t x) { return _mm512_set1_epi32(x); }
  static Reg add(Reg a, Reg b) { return _mm512_add_epi32(a, b); }
  static Reg sub(Reg a, Reg b) { return _mm512_sub_epi32(a, b); }
  static Mask gt(Reg a, Reg b) { return _mm512_cmpgt_epi32_mask(a, b); }
  static Mask none() { return 0; }
  static Mask gt_where(Mask m, Reg a, Reg b) { return _mm512_mask_cmpgt_epi32_mask(m, a, b); }
  // Mask logic in the mask registers, not through general ones.
  static Mask and_(Mask a, Mask b) { return _kand_mask16(a, b); }
  static Mask or_(Mask a, Mask b) { return _kor_mask16(a, b); }
  static Mask not_(Mask a) { return _knot_mask16(a); }
  static Mask andnot(Mask a, Mask b) { return _kandn_mask16(a, b); }  // b and not a
  static Reg select(Mask m, Reg ifClear, Reg ifSet) { return _mm512_mask_blend_epi32(m, ifClear, ifSet); }
  // A column's link flags live in the first two bytes of its lane slot.
  static Mask load_mask(const std::int32_t* p) {
    Mask m;
    std::memcpy(&m, p, sizeof m);
    return m;
  }
  static void store_mask(std::int32_t* p, Mask m) { std::memcpy(p, &m, sizeof m); }
  static unsigned bits(Mask m) { return m; }
  // Lane r takes lane r - 1's value, lane 0 takes x.
  static Reg shift_in(Reg v, std::int32_t x) {
    const Reg up = _mm512_setr_epi32(0, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14);
    return _mm512_mask_permutexvar_epi32(_mm512_set1_epi32(x), 0xFFFE, up, v);
  }
  static Mask shift_in_mask(Mask m, bool x) { return static_cast<Mask>((m << 1) | (x ? 1 : 0)); }
  static Mask lane_is(int k) { return static_cast<Mask>(k < kLanes ? 1u << k : 0u); }
  static bool lane_set(const std::int32_t* slot, int lane) { return (load_mask(slot) >> lane) & 1; }
  static Reg sub_where(Mask m, Reg a, Reg b) { return _mm512_mask_sub_epi32(a, m, a, b); }
  // A cell entry: the four masks side by side, little-endian.
  static void store_entry(unsigned char* at, Mask col, Mask row, Mask rowRef, Mask colRef) {
    _store_mask16(reinterpret_cast<__mmask16*>(at), col);
    _store_mask16(reinterpret_cast<__mmask16*>(at + 2), row);
    _store_mask16(reinterpret_cast<__mmask16*>(at + 4), rowRef);
    _store_mask16(reinterpret_cast<__mmask16*>(at + 6), colRef);
  }
};

#include "align/lane_kernel_body.inc"

}  // namespace

const std::int32_t* lane_sum_avx512(const LaneBatch& batch) {
  return batch.rowSsCode ? lane_sum<Avx512, true>(batch) : lane_sum<Avx512, false>(batch);
}

void band_sum_avx512(const BandBatch& batch) { band_sum<Avx512>(batch); }
