// What an engine routine that can fail hands back instead of ending the run:
// the caller decides when to turn it into the fatal report, so that with
// several workers the run still reports the first failing pair, in order.
#pragma once

enum class AlignFault {
  none,
  alignTooLong,    // "find_best_align": more columns than the limit
  noFirstResidue,  // "pct_start_align": an aligned string without residues
  noLastResidue,   // "pct_end_align": no residue after column 0
  outOfMemory,     // module names the allocation
};

struct AlignStatus {
  AlignFault fault = AlignFault::none;
  int value = 0;                 // the number the message shows (a length or limit)
  const char* module = nullptr;  // allocation label for outOfMemory
};

inline bool align_failed(const AlignStatus& status) { return status.fault != AlignFault::none; }

// In: a failed status. Raises it as the RunFailure the designed routine
// reports (same module, same message).
[[noreturn]] void report_align_fault(const AlignStatus& status);
