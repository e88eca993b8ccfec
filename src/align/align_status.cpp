#include "align/align_status.hpp"

#include "shell/errors.hpp"

void report_align_fault(const AlignStatus& status) {
  switch (status.fault) {
    case AlignFault::alignTooLong:
      fatal_err("find_best_align", "Alignment size exceeded, len = %d\n", status.value);
    case AlignFault::noFirstResidue:
      fatal_err("pct_start_align", "Program check: len = %d", status.value);
    case AlignFault::noLastResidue:
      fatal_err("pct_end_align", "Program check: len = %d", status.value);
    case AlignFault::outOfMemory:
      out_of_memory(status.module != nullptr ? status.module : "do_pair_align");
    case AlignFault::none:
      break;
  }
  fatal_err("report_align_fault", "Program check, see programmer.");
}
