#include "designed_run.hpp"

#include <cstdio>
#include <optional>

#include "align/kernel_select.hpp"
#include "error_frame.hpp"
#include "malign/run.hpp"
#include "report/report_writer.hpp"
#include "shell/limits.hpp"
#include "shell/parms.hpp"
#include "shell/text_input.hpp"

namespace {

void print_progress(const char* text) {
  std::fputs(text, stdout);
  std::fflush(stdout);
}

void print_stage(RunStage stage) {
  if (stage == RunStage::kPairwise) print_progress("\nProcessing pairwise alignments\n");
  if (stage == RunStage::kMultiple) print_progress("\nDoing Multiple Alignment");
}

void print_pair_dot(std::size_t, std::size_t) { print_progress("."); }

std::optional<Failure> read_job(const std::string& parmsPath, RunSettings& settings, RunInput& input) {
  UniqueFile parms;
  if (std::optional<Failure> failure = capture_failure("main", [&] { parms = get_parms_file(parmsPath); }))
    return failure;
  ParmsRead read;
  if (std::optional<Failure> failure = read_parms_file(parms.get(), nullptr, settings, read)) return failure;
  // Sequences come before the key check, so a reader's own faults show first.
  const SeqReading how{read.dataFormat, kMinRes, kMaxRes, stdout, show_warning};
  if (std::optional<Failure> failure = mget_seqs(read.dataFname, input.seqs, kMaxSeqs, how)) return failure;
  read.found[kDataFile] = 1;
  input.seqSelect = read.seqSelect - 1;
  return check_ravlin_parms(settings, read, true);
}

std::optional<Failure> run_job(const std::string& parmsPath, const std::string& outPath) {
  // A wrong RAVLIN_KERNEL ends the run before anything is read.
  if (std::optional<Failure> failure = capture_failure("main", [] { active_kernel(); })) return failure;
  RunSettings settings;
  RunInput input;
  if (std::optional<Failure> failure = read_job(parmsPath, settings, input)) return failure;

  const UniqueFile report = open_file(outPath, "w");
  if (!report)
    return make_failure(FailureKind::kFault, "ravlin_main", "Cannot open output file: '%s'\n", outPath.c_str());
  write_report_header(report.get(), settings);
  RunResult result;
  const RunCallbacks callbacks{print_stage, print_pair_dot, [&](const RunInput& in, const RunResult& out) {
                                 write_report_before_alignment(report.get(), settings, in, out);
                               }};
  if (std::optional<Failure> failure = align_run(settings, input, result, callbacks)) return failure;
  write_report_alignment(report.get(), settings, input, result);
  print_progress("\nDone\n");
  return std::nullopt;
}

}  // namespace

int ravlin_main(const std::string& parmsPath, const std::string& outPath) {
  std::optional<Failure> failure;
  // Texts grow with their input; running out of memory for one still ends
  // the run with the out-of-memory frame rather than an abort.
  if (std::optional<Failure> outOfMemory = capture_failure("main", [&] { failure = run_job(parmsPath, outPath); }))
    failure = outOfMemory;
  if (!failure) return 0;
  show_failure(*failure);
  return 1;
}
