#include "align/kernel_select.hpp"

#include <cstdlib>
#include <cstring>

#include "shell/errors.hpp"

namespace {

constexpr KernelKind kAll[] = {KernelKind::scalar, KernelKind::sse41, KernelKind::avx2, KernelKind::avx512};

bool chosen = false;
KernelKind current = KernelKind::scalar;

void require_supported(KernelKind kind) {
  if (!kernel_supported(kind))
    raise_failure("select_kernel", "Kernel %s is not available on this machine (it has: %s)\n", kernel_name(kind),
                  kernel_name(best_kernel()));
}

KernelKind kernel_from_env() {
  const char* name = std::getenv("RAVLIN_KERNEL");
  if (name == nullptr || *name == '\0') return best_kernel();
  for (KernelKind kind : kAll)
    if (std::strcmp(name, kernel_name(kind)) == 0) {
      require_supported(kind);
      return kind;
    }
  raise_failure("select_kernel", "Unknown kernel in RAVLIN_KERNEL: %s (scalar, sse41, avx2 or avx512)\n", name);
}

}  // namespace

const char* kernel_name(KernelKind kind) {
  switch (kind) {
    case KernelKind::sse41:
      return "sse41";
    case KernelKind::avx2:
      return "avx2";
    case KernelKind::avx512:
      return "avx512";
    case KernelKind::scalar:
      break;
  }
  return "scalar";
}

int kernel_lanes(KernelKind kind) {
  switch (kind) {
    case KernelKind::sse41:
      return 4;
    case KernelKind::avx2:
      return 8;
    case KernelKind::avx512:
      return 16;
    case KernelKind::scalar:
      break;
  }
  return 1;
}

bool kernel_supported(KernelKind kind) {
  switch (kind) {
    case KernelKind::sse41:
      return __builtin_cpu_supports("sse4.1");
    case KernelKind::avx2:
      return __builtin_cpu_supports("avx2");
    case KernelKind::avx512:
      return __builtin_cpu_supports("avx512f");
    case KernelKind::scalar:
      break;
  }
  return true;
}

KernelKind best_kernel() {
  KernelKind best = KernelKind::scalar;
  for (KernelKind kind : kAll)
    if (kernel_supported(kind)) best = kind;
  return best;
}

KernelKind active_kernel() {
  if (!chosen) {
    current = kernel_from_env();
    chosen = true;
  }
  return current;
}

void set_active_kernel(KernelKind kind) {
  require_supported(kind);
  current = kind;
  chosen = true;
}
