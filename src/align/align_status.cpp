#include "align/align_status.hpp"

#include "shell/errors.hpp"

void report_align_fault(const AlignStatus& status) {
  switch (status.fault) {
    case AlignFault::alignTooLong:
      throw RunFailure(make_failure(FailureKind::kAlignTooLong, "find_best_align",
                                    "Alignment size exceeded, len = %d\n", status.value));
    case AlignFault::noFirstResidue:
      raise_failure("pct_start_align", "Program check: len = %d", status.value);
    case AlignFault::noLastResidue:
      raise_failure("pct_end_align", "Program check: len = %d", status.value);
    case AlignFault::outOfMemory:
      raise_out_of_memory(status.module != nullptr ? status.module : "do_pair_align");
    case AlignFault::none:
      break;
  }
  raise_failure("report_align_fault", "Program check, see programmer.");
}
