// Small helpers the kernels and their workspaces share.
#pragma once

#include <cstdint>
#include <new>
#include <stdexcept>
#include <vector>

// Sums wrap at 32 bits as the kernel always has; doing it through unsigned
// keeps that without signed-overflow undefined behaviour. Inlined away.
inline std::int32_t add32(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

inline std::int32_t sub32(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

// Grows a workspace vector to at least n entries, never shrinking it, so
// that later alignments reuse the storage; false when memory runs out (the
// caller reports it with its own label).
template <class T>
bool grow(std::vector<T>& v, std::size_t n) {
  if (v.size() >= n) return true;
  try {
    v.clear();  // nothing to keep: growing from empty avoids copying
    v.resize(n);
  } catch (const std::bad_alloc&) {
    return false;
  } catch (const std::length_error&) {
    return false;
  }
  return true;
}
