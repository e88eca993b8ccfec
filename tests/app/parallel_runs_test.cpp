// Whole runs of ravlin-batch give the same progress, report and exit status
// on any number of threads and with every kernel the machine has. The
// reference is one thread on the scalar kernel, whose reports the other
// end-to-end tests pin against hand-checked text.
#include <string>
#include <vector>

#include "align/kernel_select.hpp"
#include "support/test_support.hpp"

namespace {

using testsupport::RunResult;
using testsupport::TempDir;

struct Job {
  const char* name;
  const char* dataFile;  // under examples/, or written by the test
  int format;
  int select;
  int printPairs;
};

std::string parms_for(const Job& job) {
  return "RAVLIN:SCOR_MATRIX ravlin.wts\nRAVLIN:STRUCT_BIAS 10\nRAVLIN:INC_GAP_PEN 5\n"
         "RAVLIN:PRINT_PCT_HOM 1\nRAVLIN:PRINT_ORDER 0\nRAVLIN:CONSENSUS_PCT 50\nRAVLIN:ASCII_FLAG 1\n"
         "RAVLIN:RES_LINE_LEN 50\nRAVLIN:PRINT_FORMAT 0\nRAVLIN:PRINT_PAIRWISE " +
         std::to_string(job.printPairs) + "\nRAVLIN:DATA_FORMAT " + std::to_string(job.format) + "\nRAVLIN:DATA_FILE " +
         job.dataFile + "\nRAVLIN:SEQ_SELECT " + std::to_string(job.select) + "\n";
}

// Seven short sequences and, fifth, one too long for any alignment: the
// first pair with it (pair 7 of 28) ends the run after six dots.
std::string too_long_data() {
  std::string text = "Sequences that end at the column limit\n";
  const std::string residues = "ACDEFGHIKLMNPQRSTVWY";
  for (int s = 0; s < 8; ++s) {
    text += ">s" + std::to_string(s) + "\n";
    const int n = s == 4 ? 3600 : 20 + 7 * s;
    for (int p = 0; p < n; ++p) text += residues[static_cast<std::size_t>((p * (s + 3)) % 20)];
    text += "\n";
  }
  return text;
}

RunResult run_with(const TempDir& dir, const std::string& threads, const char* kernel) {
  const std::string env = std::string("RAVLIN_THREADS=") + threads + " RAVLIN_KERNEL=" + kernel + " ";
  return testsupport::run_command(env + testsupport::shell_quote(RAVLIN_BATCH_BIN) + " parms report 2>&1", "",
                                  dir.path());
}

}  // namespace

TEST(ParallelRuns, SameBytesOnAnyThreadCountAndKernel) {
  const Job jobs[] = {
      {"gluts, program's order, pairs printed", "gluts.txt", 5, 15, 1},
      {"pla2 with anchors and a group", "pla2_anchored.txt", 5, 7, 0},
      {"lysozymes in Molvane format, against sequence 3", "lysozyme.molvane", 3, 3, 1},
      {"a pair past the column limit", "toolong.txt", 5, 9, 0},
  };
  std::vector<const char*> kernels;
  for (KernelKind kind : {KernelKind::sse41, KernelKind::avx2, KernelKind::avx512})
    if (kernel_supported(kind)) kernels.push_back(kernel_name(kind));
  for (const Job& job : jobs) {
    TempDir dir;
    dir.write("ravlin.wts", testsupport::read_file(testsupport::source_path("data/ravlin.wts")));
    const std::string data =
        job.dataFile == std::string("toolong.txt")
            ? too_long_data()
            : testsupport::read_file(testsupport::source_path(std::string("examples/") + job.dataFile));
    dir.write(job.dataFile, data);
    dir.write("parms", parms_for(job));
    const RunResult reference = run_with(dir, "1", "scalar");
    if (job.dataFile == std::string("toolong.txt")) {
      EXPECT_EQ(reference.status, 1);
      EXPECT_THAT(
          reference.out,
          ::testing::EndsWith("\nProcessing pairwise alignments\n......" +
                              testsupport::error_frame(1, "find_best_align", "Alignment size exceeded, len = 3500\n")));
    } else {
      EXPECT_EQ(reference.status, 0);
      EXPECT_THAT(reference.out, ::testing::EndsWith("\nDoing Multiple Alignment\nDone\n"));
    }
    const std::string referenceReport = testsupport::mask_date(dir.read("report"));
    for (const char* threads : {"1", "2", "7"}) {
      for (const char* kernel : kernels) {
        std::filesystem::remove(dir.file("report"));
        const RunResult run = run_with(dir, threads, kernel);
        const std::string where = std::string(job.name) + ", " + threads + " threads, " + kernel;
        EXPECT_EQ(run.status, reference.status) << where;
        EXPECT_EQ(run.out, reference.out) << where;
        EXPECT_EQ(testsupport::mask_date(dir.read("report")), referenceReport) << where;
      }
    }
  }
}

TEST(ParallelRuns, AKernelTheMachineLacksOrAnUnknownNameEndsTheRun) {
  TempDir dir;
  const RunResult unknown = run_with(dir, "1", "neon");
  EXPECT_EQ(unknown.status, 1);
  EXPECT_EQ(unknown.out,
            testsupport::error_frame(1, "select_kernel",
                                     "Unknown kernel in RAVLIN_KERNEL: neon (scalar, sse41, avx2 or avx512)\n"));
  for (KernelKind kind : {KernelKind::sse41, KernelKind::avx2, KernelKind::avx512}) {
    if (kernel_supported(kind)) continue;
    const RunResult lacking = run_with(dir, "1", kernel_name(kind));
    EXPECT_EQ(lacking.status, 1);
    EXPECT_THAT(lacking.out, ::testing::HasSubstr("is not available on this machine"));
  }
}
