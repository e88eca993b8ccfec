// Sections: private helpers (answers, banner, options, the temporary parameter
// file, menus), then ravlin_setup and the steps it calls in order.
#include "run_setup.hpp"

#include <climits>
#include <cstdlib>
#include <vector>

#include "designed_run.hpp"
#include "error_frame.hpp"
#include "seq/seq_record.hpp"
#include "shell/limits.hpp"
#include "shell/parms.hpp"
#include "shell/version.hpp"

std::string parmsFname;
std::string resultsFname;
std::string dataFname;

namespace {

const char* const kStars = "**************************************************\n";
const char* const kDefaultParms = "ravlin.parms";
const char* const kTmpParms = "ravlin.parms.tmp";
const char* const kDataLabel = "ravlin sequence datafile";

// 1 when -molvane was given: the report's multiple alignment is then written
// in the Molvane layout. Not the run-wide flag of the same meaning, which the
// driver reads back from the temporary parameter file.
int printFormat = 0;

// atoi without its undefined behaviour on overflow: a non-number reads as 0,
// a number too large for an int is clamped.
int text_to_int(const std::string& word) {
  const long value = std::strtol(word.c_str(), nullptr, 10);
  if (value > INT_MAX) return INT_MAX;
  if (value < INT_MIN) return INT_MIN;
  return static_cast<int>(value);
}

// Reads one answer word from the terminal; the prompt before it is flushed
// first so that a user sees it before typing.
bool read_answer(std::string& word) {
  std::fflush(stdout);
  return read_word(stdin, word);
}

// A menu answer at the end of input can never be given, so the run stops.
std::string read_required_answer(const char* module) {
  std::string word;
  if (!read_answer(word)) fatal_err(module, "Unexpected end of input");
  return word;
}

void print_banner() {
  std::printf("\n\n");
  std::printf("%s", kStars);
  std::printf("\n");
  std::printf(" Program.: ravlin_x - Version %s (c)\n", kVersion);
  std::printf("\n");
  std::printf(" Authors.: the ravlin developers\n");
  std::printf("           (see the contributors in the project's history)\n");
  std::printf(" Location: an open-source project, developed in public\n");
  std::printf(" Dept....: Protein Sequence and Structure Analysis\n");
  std::printf("\n");
  std::printf(" Supported by the volunteer time of its contributors,\n");
  std::printf(" by the institutions that let their staff work on it,\n");
  std::printf(" and by the users who send problem reports and fixes.\n");
  std::printf("\n");
  std::printf("%s", kStars);
  std::printf("\n");
}

// Searches all words for option; its index, or 0 when it is not given.
int find_option(int argc, char** argv, const char* option) {
  for (int i = 1; i < argc; ++i) {
    if (std::string(argv[i]) == option) return i;
  }
  return 0;
}

// A value option that is the last word has no value and is ignored.
void scan_value_option(int argc, char** argv, const char* option, std::string& value) {
  const int at = find_option(argc, argv, option);
  if (at > 0 && at + 1 < argc) value = argv[at + 1];
}

void scan_options(int argc, char** argv) {
  parmsFname = kDefaultParms;
  scan_value_option(argc, argv, "-i", parmsFname);
  printFormat = find_option(argc, argv, "-molvane") > 0 ? 1 : 0;
  resultsFname.clear();
  scan_value_option(argc, argv, "-o", resultsFname);
  dataFname.clear();
  scan_value_option(argc, argv, "-d", dataFname);
}

void copy_bytes(std::FILE* from, std::FILE* to) {
  int ch;
  while ((ch = std::fgetc(from)) != EOF) std::fputc(ch, to);
}

// The user's parameter file unchanged, then the interactive choices: the
// driver lets a later key override an earlier one, so these win.
void write_tmp_parms(int dataFormat, int seqSelect) {
  UniqueFile in = get_parms_file(parmsFname);
  UniqueFile out = open_file(kTmpParms, "w");
  if (!out) fatal_err("ravlin_setup", "Cannot write temporary parameter file: %s", kTmpParms);
  copy_bytes(in.get(), out.get());
  std::FILE* tmp = out.get();
  std::fprintf(tmp, "\n");
  std::fprintf(tmp, "%s %d\n", "RAVLIN:ASCII_FLAG", 1);
  std::fprintf(tmp, "%s %d\n", "RAVLIN:RES_LINE_LEN", 50);
  std::fprintf(tmp, "%s %d\n", "RAVLIN:PRINT_FORMAT", printFormat);
  std::fprintf(tmp, "%s %d\n", "RAVLIN:DATA_FORMAT", dataFormat);
  std::fprintf(tmp, "\n");
  std::fprintf(tmp, "%s %s\n", "RAVLIN:DATA_FILE", dataFname.c_str());
  std::fprintf(tmp, "%s %d\n", "RAVLIN:SEQ_SELECT", seqSelect);
}

void print_parms_menu() {
  std::printf("\n Program cannot find the parameter file.");
  std::printf("\n    1) I wish to enter a parameter file now.");
  std::printf("\n    2) I wish to exit this program.");
  std::printf("\n");
  std::printf("\n>> ");
}

void print_format_menu() {
  std::printf("\n");
  std::printf("\n What is the format of your %s:\n", kDataLabel);
  std::printf("\n    1) Text-based Format");
  std::printf("\n    2) Molvanes Format");
  std::printf("\n    0) I am not ready, exit the program.");
  std::printf("\n");
  std::printf("\n Enter a number (then press return).\n ");
  std::printf("\n>> ");
}

void print_selection_menu(const std::vector<SeqRecord>& records, int count) {
  std::printf("\n");
  std::printf("\n Choose a sequence to align against:\n\n");
  for (int k = 1; k <= count; ++k) {
    const auto& title = records[static_cast<std::size_t>(k - 1)].title;
    std::printf("   %d) %s\n", k, title ? title->c_str() : "");
  }
  std::printf("\n");
  std::printf(" Alternatively, ");
  std::printf(" choose another method of ordering the alignment: \n\n");
  std::printf("   %d) Computer decides on ordering of sequences\n", count + 1);
  std::printf("   %d) Align sequences in the order they were input\n", count + 2);
  std::printf("\n>> ");
}

}  // namespace

void ravlin_setup(int argc, char** argv) {
  print_banner();
  scan_options(argc, argv);
  check_parms_file(parmsFname);
  const int dataFormat = get_ravlin_format();
  if (dataFormat == 0) std::exit(0);
  UniqueFile data = open_data_file(dataFname, kDataLabel);
  std::printf("data name = %s\n", dataFname.c_str());
  const int seqSelect = read_seq_select(data.get(), dataFormat);
  data.reset();
  get_output_file(resultsFname);
  write_tmp_parms(dataFormat, seqSelect);
  const int status = ravlin_main(kTmpParms, resultsFname);
  std::fflush(stdout);
  std::exit(status);
}

UniqueFile check_parms_file(std::string& path) {
  UniqueFile stream = open_file(path, "r");
  while (!stream) {
    print_parms_menu();
    const int choice = text_to_int(read_required_answer("check_parms_file"));
    if (choice == 1) {
      std::printf("\n Enter name of the parameters file: ");
      path = read_required_answer("check_parms_file");
      stream = open_file(path, "r");
    } else if (choice == 2) {
      std::exit(0);
    } else {
      std::printf("\n Error, illegal menu option.\n\n");
    }
  }
  return stream;
}

int get_ravlin_format() {
  for (;;) {
    print_format_menu();
    switch (text_to_int(read_required_answer("get_ravlin_format"))) {
      case 0:
        return 0;
      case 1:
        return kFormatText;
      case 2:
        return kFormatMolvane;
      default:
        break;
    }
  }
}

UniqueFile open_data_file(std::string& path, const char* label) {
  UniqueFile stream = open_file(path, "r");
  if (stream) return stream;
  std::printf("\n Enter your %s.\n", label);
  std::printf("\n>> ");
  std::string answer;
  if (read_answer(answer)) path = answer;
  stream = open_file(path, "r");
  if (!stream) fatal_err("open_data_file", "Cannot open data file: %s", path.c_str());
  return stream;
}

int read_seq_select(std::FILE* stream, int dataFormat) {
  // Read only to list the titles; the driver reads the file again by name.
  std::vector<SeqRecord> records = checked_vector<SeqRecord>(kMaxSeqs, "read_seq_select: seqs");
  int count = 0;
  int result = 0;
  const SeqReading how{dataFormat, kMinRes, kMaxRes, stdout, show_warning};
  if (std::optional<Failure> failure = mread_seq(stream, records, count, kMaxSeqs, how, result))
    exit_on_failure(*failure);
  std::printf("\n\n Number of sequences to align: %d", count);
  if (count < 2) fatal_err("read_seq_select", "Must have 2 or more sequences to align.");
  print_selection_menu(records, count);
  return read_menu_num(stdin, 1, count + 2, 1);
}

void get_output_file(std::string& path) {
  UniqueFile stream = open_file(path, "w");
  if (!stream) {
    show_prompt(stdout, "\n Enter output filename.\n");
    std::string answer;
    if (read_answer(answer)) path = answer;
    stream = open_file(path, "w");
    if (!stream) fatal_err("get_output_file", "Cannot open output file: '%s'\n", path.c_str());
  }
}

int read_menu_num(std::FILE* stream, int min, int max, int errLevel) {
  std::fflush(stdout);
  std::string word;
  read_word(stream, word);
  const int value = text_to_int(word);
  if (value >= min && value <= max) return value;
  // The message shows -1 rather than the typed text on purpose.
  const std::string message = format_text("Range error, Input=%d where Min=%d, Max=%d\n", -1, min, max);
  show_err(errLevel, "read_menu_num", message.c_str());
  return -1;
}
