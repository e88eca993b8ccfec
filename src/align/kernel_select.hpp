// Which pairwise kernel runs: the scalar reference or a vector kernel, chosen
// once per process from what the machine has and RAVLIN_KERNEL.
#pragma once

enum class KernelKind { scalar, sse41, avx2, avx512 };

// "scalar", "sse41", "avx2", "avx512".
const char* kernel_name(KernelKind kind);
// Pairs a kernel aligns at once (1 for the scalar kernel).
int kernel_lanes(KernelKind kind);
// Whether this machine can run the kernel.
bool kernel_supported(KernelKind kind);
// The fastest kernel this machine can run.
KernelKind best_kernel();
// In: RAVLIN_KERNEL (scalar, sse41, avx2 or avx512; unset or empty means the
// best), unless set_active_kernel chose one. Out: the kernel the pairwise
// stage uses. An unknown name or a kernel the machine lacks ends the run
// with a message that says so.
KernelKind active_kernel();
// Chooses the kernel for the rest of the process (overrides RAVLIN_KERNEL);
// a kernel the machine lacks ends the run as above.
void set_active_kernel(KernelKind kind);
