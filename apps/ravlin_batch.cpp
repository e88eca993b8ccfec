// ravlin-batch: runs one alignment job from a complete parameter file, with
// no menus, for scripts and pipelines.
#include <cstdio>

#include "designed_run.hpp"

namespace {

const char* const kUsage =
    "usage: ravlin-batch PARMS REPORT\n"
    "\n"
    "Builds one multiple alignment without any menus and writes its report.\n"
    "\n"
    "  PARMS   the parameter file of the run. It must be complete: every key that\n"
    "          the run needs has to be in it, including those that the interactive\n"
    "          ravlin appends from its menus:\n"
    "            RAVLIN:ASCII_FLAG 1     makes the next two keys and\n"
    "                                    RAVLIN:PRINT_PAIRWISE required\n"
    "            RAVLIN:RES_LINE_LEN 50  residues per report line (3 to 256)\n"
    "            RAVLIN:PRINT_FORMAT 0   0 = blocks of residues, 1 = Molvane entries\n"
    "            RAVLIN:DATA_FORMAT 5    1 PIR, 2 Swiss-Prot, 3 Molvane,\n"
    "                                    4 PIR compressed, 5 text-based\n"
    "            RAVLIN:DATA_FILE seqs   the sequence data file\n"
    "            RAVLIN:SEQ_SELECT 4     for N sequences: 1..N align against that\n"
    "                                    sequence, N+1 the program decides the order,\n"
    "                                    N+2 align in input order\n"
    "          besides the keys of an ordinary parameter file (RAVLIN:SCOR_MATRIX,\n"
    "          RAVLIN:STRUCT_BIAS, RAVLIN:INC_GAP_PEN, RAVLIN:PRINT_PCT_HOM,\n"
    "          RAVLIN:PRINT_ORDER, RAVLIN:CONSENSUS_PCT).\n"
    "          Without RAVLIN:ASCII_FLAG 1, missing printing keys mean the Molvane\n"
    "          layout and no pairwise alignments.\n"
    "  REPORT  the report file to write; it is created or emptied.\n"
    "\n"
    "Progress goes to standard output; errors end the run with status 1.\n";

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  return ravlin_main(argv[1], argv[2]);
}
