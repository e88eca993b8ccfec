// Sections: run_align_command at the end; before it the error and progress
// reporting, the run's settings, structure and anchors, the order, and the
// writing of the result.
#include "cli/align_command.hpp"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "align/kernel_select.hpp"
#include "cli/align_options.hpp"
#include "cli/failure_text.hpp"
#include "cli/input_reading.hpp"
#include "cli/output_file.hpp"
#include "cli/shipped_defaults.hpp"
#include "malign/run.hpp"
#include "report/alignment_views.hpp"
#include "report/alignment_writers.hpp"
#include "report/line_printers.hpp"
#include "report/picture_writer.hpp"
#include "report/report_writer.hpp"
#include "report/standard_writers.hpp"
#include "seq/seq_record.hpp"
#include "shell/errors.hpp"
#include "shell/text_input.hpp"
#include "shell/version.hpp"
#include "structure/anchor_file.hpp"
#include "structure/placement.hpp"
#include "treealign/tree_align.hpp"

namespace {

using Clock = std::chrono::steady_clock;

// ---- errors ----

void show_error(const std::string& text) {
  std::fprintf(stderr, "ravlin-align: error: %s\n", text.c_str());
  std::fflush(stderr);
}

[[noreturn]] void fail(const std::string& text) {
  discard_output();
  show_error(text);
  std::exit(1);
}

void fail_on(const std::optional<Failure>& failure, const std::string& context) {
  if (failure) fail(failure_text(*failure, context));
}

// ---- progress ----

struct ProgressState {
  bool quiet = false;
  bool live = false;  // standard error is a terminal: one line a stage, redrawn
  Clock::time_point stageStart;
  Clock::time_point lastDraw;
  std::string stage;
};

double seconds_since(Clock::time_point from) { return std::chrono::duration<double>(Clock::now() - from).count(); }

std::string clock_text(double seconds) {
  const long whole = static_cast<long>(seconds + 0.5);
  char text[32];
  std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
  return text;
}

void start_stage(ProgressState& progress, const std::string& name) {
  progress.stage = name;
  progress.stageStart = Clock::now();
  if (!progress.quiet && !progress.live) std::fprintf(stderr, "ravlin-align: %s ...\n", name.c_str());
}

void end_stage(ProgressState& progress) {
  if (progress.stage.empty() || progress.quiet) return;
  const double took = seconds_since(progress.stageStart);
  if (progress.live)
    std::fprintf(stderr, "\r\033[K%s: done in %.1f s\n", progress.stage.c_str(), took);
  else
    std::fprintf(stderr, "ravlin-align: %s done in %.1f s\n", progress.stage.c_str(), took);
  progress.stage.clear();
}

void on_stage(ProgressState& progress, RunStage stage) {
  end_stage(progress);
  if (stage == RunStage::kPairwise) start_stage(progress, "pairwise alignments");
  if (stage == RunStage::kMultiple) start_stage(progress, "multiple alignment");
}

void on_pair_done(ProgressState& progress, std::size_t done, std::size_t total) {
  if (progress.quiet || !progress.live) return;
  const Clock::time_point now = Clock::now();
  if (done != total && now - progress.lastDraw < std::chrono::milliseconds(100)) return;
  progress.lastDraw = now;
  const double elapsed = seconds_since(progress.stageStart);
  const double left = done > 0 ? elapsed * static_cast<double>(total - done) / static_cast<double>(done) : 0.0;
  std::fprintf(stderr, "\r\033[K%s: %zu of %zu (%zu%%), %s elapsed, %s left", progress.stage.c_str(), done, total,
               total > 0 ? done * 100 / total : 100, clock_text(elapsed).c_str(), clock_text(left).c_str());
  std::fflush(stderr);
}

void note(const ProgressState& progress, const std::string& text) {
  if (!progress.quiet) std::fprintf(stderr, "ravlin-align: %s\n", text.c_str());
}

// Shown even with --quiet: the run goes on, but not as the user may think.
void warn(const std::string& text) { std::fprintf(stderr, "ravlin-align: warning: %s\n", text.c_str()); }

// ---- settings ----

// The shipped settings come in sets tuned for how much of the input carries
// structure: ravlin.parms, then the set's own keys (later keys win), and the
// set's weight file.
struct ShippedSet {
  std::string name;  // ravlin-<name>.parms and ravlin-<name>.wts
  std::string why;
};

// The consistency mode's set: its pairs are weighed as probabilities, which
// wants a table of log-odds scores; the sets tuned for the one-by-one
// strategy are not.
ShippedSet shipped_set(int withStructure, int seqs, RunMode mode) {
  if (mode == RunMode::kConsistency) return {"consistency", "the consistency mode"};
  if (withStructure == 0) return {"nostruct", "inputs where no sequence has structure"};
  if (withStructure == seqs) return {"struct", "inputs where every sequence has structure"};
  return {"partial", "inputs where " + std::to_string(withStructure) + " of " + std::to_string(seqs) +
                         " sequences have structure"};
}

std::string shipped_parms_text(const ShippedSet& set) {
  return std::string(shipped_file("ravlin.parms")) + "\n" + std::string(shipped_file("ravlin-" + set.name + ".parms"));
}

UniqueFile open_text(std::string_view text) {
  // fmemopen wants a writable buffer only for writing; reading leaves it be.
  return UniqueFile(fmemopen(const_cast<char*>(text.data()), text.size(), "r"));
}

UniqueFile open_user_file(const std::string& path, const char* what) {
  UniqueFile file = open_file(path, "r");
  if (!file) fail("cannot read the " + std::string(what) + " " + path + "; check the file name");
  return file;
}

int seqs_with_structure(const std::vector<SeqRecord>& records) {
  int count = 0;
  for (const SeqRecord& record : records) count += record.hasSRes == 1 ? 1 : 0;
  return count;
}

// Reads and checks a parameter file (and its weight file, if given apart);
// what names the file in a failure.
RunSettings parsed_settings(std::FILE* parms, WeightSource* weights, const std::string& what) {
  RunSettings settings;
  ParmsRead read;
  std::optional<Failure> failure = read_parms_file(parms, weights, settings, read);
  if (!failure) failure = check_ravlin_parms(settings, read, false);
  fail_on(failure, what);
  return settings;
}

RunSettings read_settings(const AlignOptions& options, const std::vector<SeqRecord>& records, RunMode mode,
                          const ProgressState& progress) {
  const ShippedSet set = shipped_set(seqs_with_structure(records), static_cast<int>(records.size()), mode);
  const std::string weightsName = "ravlin-" + set.name + ".wts";
  const std::string parmsText = shipped_parms_text(set);
  UniqueFile weights;
  WeightSource source{nullptr, weightsName};
  if (!options.weightsFile.empty()) {
    weights = open_user_file(options.weightsFile, "weight file");
    source = {weights.get(), options.weightsFile};
  } else if (options.paramsFile.empty()) {
    weights = open_text(shipped_file(weightsName));
    source.stream = weights.get();
  }
  if (options.paramsFile.empty()) note(progress, "shipped settings for " + set.why + " (ravlin-" + set.name + ")");
  UniqueFile parms =
      options.paramsFile.empty() ? open_text(parmsText) : open_user_file(options.paramsFile, "parameter file");
  RunSettings settings =
      parsed_settings(parms.get(), source.stream != nullptr ? &source : nullptr,
                      options.paramsFile.empty() ? "shipped ravlin-" + set.name + ".parms" : options.paramsFile);
  settings.threads = options.threads;
  return settings;
}

// A shipped set as it stands, for a second view beside the run's settings.
RunSettings read_shipped_settings(const std::string& name) {
  const std::string parmsText = shipped_parms_text(ShippedSet{name, ""});
  UniqueFile parms = open_text(parmsText);
  UniqueFile weights = open_text(shipped_file("ravlin-" + name + ".wts"));
  WeightSource source{weights.get(), "ravlin-" + name + ".wts"};
  return parsed_settings(parms.get(), &source, "shipped ravlin-" + name + ".parms");
}

// ---- structure and anchors ----

bool has_state(const std::string& states) { return states.find_first_not_of('X') != std::string::npos; }

void add_structures(const AlignOptions& options, InputSeqs& input, const ProgressState& progress) {
  if (options.ssFiles.empty()) return;
  std::vector<StructEntry> entries;
  std::string error;
  for (const std::string& source : options.ssFiles)
    if (!read_structure_source(source, entries, error)) fail(error);
  std::vector<std::string> sRes;
  StructureNotes told;
  if (!assign_structures(entries, input.ids, input.residues, sRes, told, error)) fail(error);
  if (!told.unused.empty()) warn(told.unused);
  for (const std::string& text : told.notes) note(progress, text);
  for (std::size_t k = 0; k < sRes.size(); ++k) {
    if (!has_state(sRes[k])) continue;
    input.records[k].sRes = sRes[k];
    input.records[k].hasSRes = 1;
  }
}

void add_anchors(const AlignOptions& options, InputSeqs& input) {
  if (options.anchorsFile.empty()) return;
  std::vector<AnchorEntry> entries;
  std::string error;
  if (!read_anchor_file(options.anchorsFile, entries, error)) fail(error);
  std::vector<std::string> uRes;
  if (!assign_anchors(entries, input.ids, input.residues, uRes, error)) fail(error);
  for (std::size_t k = 0; k < uRes.size(); ++k) {
    if (uRes[k].find_first_not_of('-') == std::string::npos) continue;
    input.records[k].uRes = uRes[k];
    input.records[k].hasURes = 1;
  }
}

// ---- order and output ----

// The run's order choice: n computed, n + 1 input order, else the sequence
// the others are aligned against. One sequence is its own alignment.
int seq_select(const std::string& order, const InputSeqs& input) {
  const int n = static_cast<int>(input.ids.size());
  if (n < 2 || order == "input") return n + 1;
  if (order == "computed") return n;
  const auto found = std::find(input.ids.begin(), input.ids.end(), order);
  if (found == input.ids.end())
    fail("--order " + order + ": no sequence has that id; give computed, input or one of the input's ids");
  return static_cast<int>(found - input.ids.begin());
}

PictureOptions picture_options(const AlignOptions& options, const PrintOptions& print, bool withDate) {
  PictureOptions picture{options.pictureWidth, options.colour, print, ""};
  if (withDate) {
    picture.date = get_date();
    if (!picture.date.empty() && picture.date.back() == '\n') picture.date.pop_back();
  }
  return picture;
}

// The formats written from the alignment's view alone.
struct ViewWriter {
  OutFormat format;
  void (*write)(std::FILE*, const AlignmentView&);
};

constexpr ViewWriter kViewWriters[] = {
    {OutFormat::kFasta, write_fasta_alignment},         {OutFormat::kClustal, write_clustal_alignment},
    {OutFormat::kStockholm, write_stockholm_alignment}, {OutFormat::kMsf, write_msf_alignment},
    {OutFormat::kPhylip, write_phylip_alignment},       {OutFormat::kA2m, write_a2m_alignment},
    {OutFormat::kMolvane, write_molvane_layout},
};

void write_result(const AlignOptions& options, const RunSettings& settings, const RunInput& input,
                  const RunResult& result, const std::string& confidence, std::FILE* stream) {
  AlignmentView view = malign_view(input.seqs, result.alignment, result.alignOrder, options.alignedOutputOrder ? 0 : 1,
                                   settings.consensusPercent);
  view.confidence = confidence;
  for (const ViewWriter& writer : kViewWriters)
    if (writer.format == options.outFormat) return writer.write(stream, view);
  const ScoreTable table = prepared_residue_table(settings);
  const PrintOptions print = run_print_options(settings, table);
  if (options.outFormat == OutFormat::kHtml)
    return write_html_picture(stream, view, picture_options(options, print, true));
  // No date, so that the same input gives the same drawing.
  if (options.outFormat == OutFormat::kSvg)
    return write_svg_picture(stream, view, picture_options(options, print, false));
  write_report_alignment(stream, settings, input, result);
}

// ---- the strategy ----

// Consistency weighs every residue pair of every pair of sequences and links
// them through third sequences; auto takes it up to about 140 sequences of
// 300 (some 20 s on one core), where it aligns long families far better than
// the tree mode; then the tree mode up to 400 sequences; above, the fast
// mode, whose tree needs no pair aligned and whose joins cost the same
// whatever their size.
constexpr double kConsistencyMostCells = 1e9;
constexpr int kTreeMostSeqs = 400;

// Residue pairs of all pairs of sequences.
double pair_cells(const std::vector<SeqRecord>& records) {
  double sum = 0, squares = 0;
  for (const SeqRecord& record : records) {
    sum += record.numRes;
    squares += static_cast<double>(record.numRes) * record.numRes;
  }
  return (sum * sum - squares) / 2;
}

bool designed_wanted(const AlignOptions& options) {
  if (options.mode == RunMode::kDesigned) return true;
  return options.mode == RunMode::kAuto && (options.outFormat == OutFormat::kReport || options.orderGiven);
}

RunMode chosen_mode(const AlignOptions& options, const std::vector<SeqRecord>& records) {
  if (designed_wanted(options)) return RunMode::kDesigned;
  if (options.mode != RunMode::kAuto) return options.mode;
  if (pair_cells(records) <= kConsistencyMostCells) return RunMode::kConsistency;
  return static_cast<int>(records.size()) <= kTreeMostSeqs ? RunMode::kTree : RunMode::kFast;
}

// "1,917 million": grouped as the help and the manual write it.
std::string millions(double count) {
  std::string digits = std::to_string(std::llround(count / 1e6));
  for (std::size_t at = digits.size(); at > 3; at -= 3) digits.insert(at - 3, ",");
  return digits + " million";
}

void note_mode(const AlignOptions& options, const std::vector<SeqRecord>& records, RunMode mode,
               const ProgressState& progress) {
  if (options.mode != RunMode::kAuto) return;
  if (mode == RunMode::kDesigned) {
    note(progress, std::string("mode designed (") +
                       (options.outFormat == OutFormat::kReport ? "-f report" : "--order") +
                       " asks for the designed strategy)");
    return;
  }
  const char* name = mode == RunMode::kConsistency ? "consistency" : mode == RunMode::kTree ? "tree" : "fast";
  note(progress, std::string("mode ") + name + " (" + std::to_string(records.size()) + " sequences, " +
                     millions(pair_cells(records)) + " residue pairs; consistency up to " +
                     millions(kConsistencyMostCells) + ", tree up to " + std::to_string(kTreeMostSeqs) + " sequences)");
}

void on_tree_stage(ProgressState& progress, TreeStage stage) {
  end_stage(progress);
  if (stage == TreeStage::kPairs) start_stage(progress, "pairwise alignments");
  if (stage == TreeStage::kSeedTree) start_stage(progress, "guide tree from alignments to seeds");
  if (stage == TreeStage::kJoins) start_stage(progress, "joins up the guide tree");
  if (stage == TreeStage::kRefine) start_stage(progress, "refinement");
}

TreeScores tree_scores(const RunSettings& settings) {
  return {prepared_residue_table(settings),
          settings.ssMatrix,
          settings.gapPen,
          settings.gapSizePen,
          settings.midStructPen,
          settings.endStructPen};
}

// shipped: the run's settings are the shipped ones (no --weights or --params).
void run_tree_mode(RunMode mode, const RunSettings& settings, bool shipped, const RunInput& run,
                   ProgressState& progress, RunResult& result, std::string& confidence) {
  TreeAlignOptions options;
  options.mode = mode == RunMode::kTree   ? TreeMode::kTree
                 : mode == RunMode::kFast ? TreeMode::kFast
                                          : TreeMode::kConsistency;
  options.threads = settings.threads;
  if (mode == RunMode::kConsistency && shipped) {
    const RunSettings second = read_shipped_settings("nostruct");
    options.secondTable = SecondTable{prepared_residue_table(second), second.gapPen};
    if (seqs_with_structure(run.seqs) == 0)
      note(progress, "no sequence has structure: the likely pairs also weigh the ravlin-nostruct table");
  }
  if (mode == RunMode::kFast && shipped)
    options.expectationTable = prepared_residue_table(read_shipped_settings("consistency"));
  TreeAlignProgress callbacks;
  callbacks.stageStarted = [&](TreeStage stage) { on_tree_stage(progress, stage); };
  callbacks.pairDone = [&](std::size_t done, std::size_t total) { on_pair_done(progress, done, total); };
  TreeAlignResult aligned;
  fail_on(tree_align(tree_scores(settings), run.seqs, options, aligned, callbacks), "");
  result.alignment = std::move(aligned.alignment);
  result.alignOrder = std::move(aligned.order);
  confidence = std::move(aligned.confidence);
}

// ---- adding to alignments ----

// The sequences of --to/--add or of the two --profile files, one after the
// other, and the parts whose alignment is kept: the given alignments' rows,
// and each added sequence alone.
struct GivenParts {
  std::vector<std::vector<int>> seqs;
  std::vector<std::vector<std::string>> rows;
};

void check_alignment_rows(const InputSeqs& read, const std::string& file) {
  for (std::size_t k = 1; k < read.aligned.size(); ++k)
    if (read.aligned[k].size() != read.aligned[0].size())
      fail(file + " is not an alignment: the row of " + read.ids[k] + " has " + std::to_string(read.aligned[k].size()) +
           " columns and that of " + read.ids[0] + " " + std::to_string(read.aligned[0].size()) +
           "; give aligned FASTA, Stockholm or Clustal with rows of one width");
}

void add_part(GivenParts& parts, const InputSeqs& input, std::size_t from, std::size_t to) {
  std::vector<int>& seqs = parts.seqs.emplace_back();
  std::vector<std::string>& rows = parts.rows.emplace_back();
  for (std::size_t k = from; k < to; ++k) {
    seqs.push_back(static_cast<int>(k));
    rows.push_back(input.aligned[k]);
  }
}

GivenParts read_given_alignments(const AlignOptions& options, InputSeqs& input, const ProgressState& progress) {
  const bool adding = !options.toFile.empty();
  const std::vector<std::string> files =
      adding ? std::vector<std::string>{options.toFile, options.addFile} : options.profileFiles;
  GivenParts parts;
  std::string error;
  for (std::size_t f = 0; f < files.size(); ++f) {
    InputSeqs read;
    if (!read_input_seqs(files[f], options.inFormat, false, read, error)) fail(error);
    if (!read.note.empty()) note(progress, read.note);
    const bool kept = !adding || f == 0;
    if (kept) check_alignment_rows(read, files[f]);
    // An added sequence is placed on its own: its gaps, if any, are dropped.
    if (!kept) read.aligned = read.residues;
    const std::size_t from = input.ids.size();
    if (f == 0)
      input = std::move(read);
    else if (!append_input_seqs(input, std::move(read), files[0], files[f], error))
      fail(error);
    if (kept) {
      add_part(parts, input, from, input.ids.size());
      continue;
    }
    for (std::size_t k = from; k < input.ids.size(); ++k) add_part(parts, input, k, k + 1);
  }
  const std::size_t first = parts.seqs[0].size();
  note(progress, adding
                     ? "adding the " + std::to_string(input.ids.size() - first) + " sequences of " + options.addFile +
                           " one by one to the alignment of " + std::to_string(first) + " in " + options.toFile
                     : "joining the alignments of " + std::to_string(first) + " sequences in " + files[0] + " and " +
                           std::to_string(parts.seqs[1].size()) + " in " + files[1]);
  return parts;
}

std::vector<std::string> files_read(const AlignOptions& options) {
  std::vector<std::string> files = {options.input,       options.paramsFile, options.weightsFile,
                                    options.anchorsFile, options.addFile,    options.toFile};
  files.insert(files.end(), options.profileFiles.begin(), options.profileFiles.end());
  for (const std::string& source : options.ssFiles) {
    StructSource parsed;
    std::string ignored;
    files.push_back(parse_structure_source(source, parsed, ignored) ? parsed.path : source);
  }
  files.erase(std::remove(files.begin(), files.end(), std::string()), files.end());
  return files;
}

}  // namespace

int run_align_command(int argc, char** argv) {
  AlignOptions options;
  std::string error;
  switch (parse_align_options(argc, argv, options, error)) {
    case ParseResult::kHelp:
      std::fputs(align_help_text().c_str(), stdout);
      return 0;
    case ParseResult::kVersion:
      std::printf("ravlin-align %s\n", kVersion);
      return 0;
    case ParseResult::kUsageError:
      std::fprintf(stderr, "ravlin-align: %s\n%s", error.c_str(), kAlignUsage);
      return 2;
    case ParseResult::kRun:
      break;
  }
  ProgressState progress;
  progress.quiet = options.quiet;
  progress.live = isatty(STDERR_FILENO) == 1;
  // A wrong RAVLIN_KERNEL ends the run before any work.
  fail_on(capture_failure("main", [] { active_kernel(); }), "");

  OutputTarget target;
  if (!open_output(options.output, options.force, files_read(options), target, error)) fail(error);

  InputSeqs input;
  const bool given = !options.toFile.empty() || !options.profileFiles.empty();
  GivenParts parts;
  if (given) {
    parts = read_given_alignments(options, input, progress);
  } else {
    if (!read_input_seqs(options.input, options.inFormat, designed_wanted(options), input, error)) fail(error);
    if (!input.note.empty()) note(progress, input.note);
  }
  add_structures(options, input, progress);
  add_anchors(options, input);
  const RunMode mode = given ? RunMode::kAuto : chosen_mode(options, input.records);
  const RunSettings settings = read_settings(options, input.records, mode, progress);
  if (!given) note_mode(options, input.records, mode, progress);
  RunInput run{std::move(input.records), seq_select(options.order, input)};
  if (given) {
    RunResult result;
    TreeAlignResult joined;
    start_stage(progress, "joins");
    fail_on(join_given_alignments(tree_scores(settings), run.seqs, parts.seqs, parts.rows, joined), "");
    end_stage(progress);
    result.alignment = std::move(joined.alignment);
    result.alignOrder = std::move(joined.order);
    write_result(options, settings, run, result, "", target.stream);
    if (!commit_output(target, error)) fail(error);
    return 0;
  }
  if (mode != RunMode::kDesigned) {
    RunResult result;
    std::string confidence;
    const bool shipped = options.weightsFile.empty() && options.paramsFile.empty();
    run_tree_mode(mode, settings, shipped, run, progress, result, confidence);
    end_stage(progress);
    write_result(options, settings, run, result, confidence, target.stream);
    if (!commit_output(target, error)) fail(error);
    return 0;
  }

  const bool report = options.outFormat == OutFormat::kReport;
  if (report) write_report_header(target.stream, settings);
  RunCallbacks callbacks;
  callbacks.stageStarted = [&](RunStage stage) { on_stage(progress, stage); };
  callbacks.pairDone = [&](std::size_t done, std::size_t total) { on_pair_done(progress, done, total); };
  if (report)
    callbacks.orderDecided = [&](const RunInput& in, const RunResult& out) {
      write_report_before_alignment(target.stream, settings, in, out);
    };
  RunResult result;
  fail_on(align_run(settings, run, result, callbacks), "");
  end_stage(progress);
  write_result(options, settings, run, result, "", target.stream);
  if (!commit_output(target, error)) fail(error);
  return 0;
}
