#include "cli/align_options.hpp"

#include <cctype>
#include <charconv>
#include <cstddef>
#include <string_view>
#include <utility>

#include "align/kernel_select.hpp"
#include "report/picture_layout.hpp"

const char* const kAlignUsage =
    "usage: ravlin-align [options] INPUT\n"
    "Try 'ravlin-align --help' for more information.\n";

namespace {

constexpr int kMaxThreads = 256;

// Every format ravlin-align names, in the order its messages list them: what
// it reads (--informat) and what it writes (--outfmt, which also takes the
// short name).
struct NamedFormat {
  std::string_view name;
  std::string_view shortName;
  bool read;
  bool written;
  OutFormat format;
};

constexpr NamedFormat kFormats[] = {
    {"fasta", "fa", true, true, OutFormat::kFasta},
    {"clustal", "aln", true, true, OutFormat::kClustal},
    {"stockholm", "sto", true, true, OutFormat::kStockholm},
    {"msf", "", false, true, OutFormat::kMsf},
    {"phylip", "phy", false, true, OutFormat::kPhylip},
    {"a2m", "", false, true, OutFormat::kA2m},
    {"report", "", false, true, OutFormat::kReport},
    {"text", "", true, false, OutFormat::kFasta},
    {"molvane", "", true, true, OutFormat::kMolvane},
    {"html", "", false, true, OutFormat::kHtml},
    {"svg", "", false, true, OutFormat::kSvg},
    {"pir", "", true, false, OutFormat::kFasta},
};

// More names --outfmt takes, as users of other aligners type them. Whole
// names rather than any prefix, so that a name that works now keeps working
// when a format is added.
constexpr std::pair<std::string_view, std::string_view> kOutputAliases[] = {
    {"fas", "fasta"},
    {"clu", "clustal"},
    {"st", "stockholm"},
    {"gcg", "msf"},
};

// "(a, b, c)": the names of the formats read (or written).
std::string format_list(bool read) {
  std::string list;
  for (const NamedFormat& f : kFormats)
    if (read ? f.read : f.written) list += (list.empty() ? "(" : ", ") + std::string(f.name);
  return list + ")";
}

const NamedFormat* find_format(const std::string& wanted, bool read) {
  std::string_view name = wanted;
  if (!read)
    for (const auto& [alias, aliased] : kOutputAliases)
      if (wanted == alias) name = aliased;
  for (const NamedFormat& f : kFormats) {
    if (!(read ? f.read : f.written)) continue;
    if (name == f.name || (!read && !f.shortName.empty() && name == f.shortName)) return &f;
  }
  return nullptr;
}

// A word an option takes, and what it stands for.
template <class Value>
struct NamedValue {
  std::string_view name;
  Value value;
};

// The value that table names wanted, or null.
template <class Value, std::size_t N>
const Value* find_named(const NamedValue<Value> (&table)[N], std::string_view wanted) {
  for (const NamedValue<Value>& entry : table)
    if (entry.name == wanted) return &entry.value;
  return nullptr;
}

constexpr NamedValue<ColourScheme> kColourSchemes[] = {
    {"none", ColourScheme::kNone},
    {"clustal", ColourScheme::kClustal},
    {"zappo", ColourScheme::kZappo},
    {"hydrophobicity", ColourScheme::kHydrophobicity},
};

constexpr NamedValue<RunMode> kModes[] = {
    {"auto", RunMode::kAuto}, {"consistency", RunMode::kConsistency}, {"tree", RunMode::kTree},
    {"fast", RunMode::kFast}, {"designed", RunMode::kDesigned},
};

std::string lower_case(std::string_view text) {
  std::string out(text);
  for (char& ch : out) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
  return out;
}

bool parse_whole_number(const std::string& text, int low, int high, int& number) {
  const char* end = text.data() + text.size();
  const auto [ptr, ec] = std::from_chars(text.data(), end, number);
  return ec == std::errc() && ptr == end && number >= low && number <= high;
}

// Options that take a value: their value, from "--opt=VALUE" or the next word.
struct OptionReader {
  int argc;
  char** argv;
  int at = 1;

  bool value_of(std::string_view arg, std::string_view shortName, std::string_view longName, std::string& value,
                std::string& error) {
    if (arg.starts_with(std::string(longName) + "=")) {
      value = std::string(arg.substr(longName.size() + 1));
      return true;
    }
    if (arg != shortName && arg != longName) return false;
    if (at + 1 >= argc) {
      error = "option " + std::string(arg) + " needs a value";
      return true;
    }
    value = argv[++at];
    return true;
  }
};

bool apply_value(const std::string& name, const std::string& value, AlignOptions& options, std::string& error) {
  if (name == "--output") {
    options.output = value;
  } else if (name == "--outfmt") {
    const NamedFormat* found = find_format(lower_case(value), false);
    if (found == nullptr) {
      error = "unknown output format '" + value + "' " + format_list(false);
      return false;
    }
    options.outFormat = found->format;
  } else if (name == "--informat") {
    const NamedFormat* found = find_format(lower_case(value), true);
    if (found == nullptr) {
      error = "unknown input format '" + value + "' " + format_list(true);
      return false;
    }
    options.inFormat = std::string(found->name);
  } else if (name == "--order") {
    options.order = value;
    options.orderGiven = value != "computed";  // the tree modes compute their order too
  } else if (name == "--mode") {
    const RunMode* mode = find_named(kModes, value);
    if (mode == nullptr) {
      error = "--mode takes auto, consistency, tree, fast or designed, not '" + value + "'";
      return false;
    }
    options.mode = *mode;
  } else if (name == "--output-order") {
    if (value != "input" && value != "aligned") {
      error = "--output-order takes input or aligned, not '" + value + "'";
      return false;
    }
    options.alignedOutputOrder = value == "aligned";
  } else if (name == "--params") {
    options.paramsFile = value;
  } else if (name == "--weights") {
    options.weightsFile = value;
  } else if (name == "--add") {
    options.addFile = value;
  } else if (name == "--to") {
    options.toFile = value;
  } else if (name == "--profile") {
    options.profileFiles.push_back(value);
  } else if (name == "--ss") {
    options.ssFiles.push_back(value);
  } else if (name == "--anchors") {
    options.anchorsFile = value;
  } else if (name == "--threads") {
    if (!parse_whole_number(value, 1, kMaxThreads, options.threads)) {
      error = "--threads takes a whole number from 1 to 256, not '" + value + "'";
      return false;
    }
  } else if (name == "--width") {
    if (!parse_whole_number(value, kMinPictureWidth, kMaxPictureWidth, options.pictureWidth)) {
      error = "--width takes a whole number from 10 to 3500, not '" + value + "'";
      return false;
    }
  } else if (name == "--colour" || name == "--color") {
    const ColourScheme* scheme = find_named(kColourSchemes, lower_case(value));
    if (scheme == nullptr) {
      error = "--colour takes none, clustal, zappo or hydrophobicity, not '" + value + "'";
      return false;
    }
    options.colour = *scheme;
  }
  return true;
}

struct ValueOption {
  std::string_view shortName;
  std::string_view longName;
};

constexpr ValueOption kValueOptions[] = {
    {"-o", "--output"}, {"-f", "--outfmt"}, {"", "--informat"}, {"", "--order"},   {"", "--output-order"},
    {"", "--params"},   {"", "--weights"},  {"-s", "--ss"},     {"", "--anchors"}, {"-t", "--threads"},
    {"", "--width"},    {"", "--colour"},   {"", "--color"},    {"", "--mode"},    {"", "--add"},
    {"", "--to"},       {"", "--profile"},
};

// Adding to an alignment and joining two take the place of INPUT and keep
// the given columns, so nothing that builds a new alignment goes with them.
std::string fixed_alignment_misuse(const AlignOptions& options, bool inputSeen) {
  const bool adding = !options.addFile.empty() || !options.toFile.empty();
  const bool joining = !options.profileFiles.empty();
  if (!adding && !joining) return "";
  if (adding && joining) return "--add/--to and --profile do not go together";
  if (adding && (options.addFile.empty() || options.toFile.empty()))
    return "--add NEW needs --to ALIGNED, the alignment to add to (and --to needs --add)";
  if (joining && options.profileFiles.size() != 2)
    return "--profile joins two alignments: give --profile A --profile B";
  const std::string what = adding ? "--add" : "--profile";
  if (inputSeen) return what + " takes the place of INPUT; give no INPUT file";
  if (options.mode != RunMode::kAuto) return what + " keeps the given alignment; --mode does not apply";
  if (options.outFormat == OutFormat::kReport || options.orderGiven)
    return what + " keeps the given alignment; -f report and --order are for the designed strategy";
  return "";
}

// The input file, given by -i/--in or as the one word that is no option.
bool take_input(const std::string& path, AlignOptions& options, bool& inputSeen, std::string& error) {
  if (inputSeen) {
    error = "more than one input file (" + options.input + ", " + path + ")";
    return false;
  }
  options.input = path;
  inputSeen = true;
  return true;
}

}  // namespace

ParseResult parse_align_options(int argc, char** argv, AlignOptions& options, std::string& error) {
  OptionReader reader{argc, argv};
  bool inputSeen = false;
  for (; reader.at < argc; ++reader.at) {
    const std::string arg = argv[reader.at];
    std::string inputPath;
    if (reader.value_of(arg, "-i", "--in", inputPath, error)) {
      if (!error.empty() || !take_input(inputPath, options, inputSeen, error)) return ParseResult::kUsageError;
      continue;
    }
    if (arg == "-h" || arg == "--help") return ParseResult::kHelp;
    if (arg == "-V" || arg == "--version") return ParseResult::kVersion;
    if (arg == "-q" || arg == "--quiet") {
      options.quiet = true;
      continue;
    }
    if (arg == "--force") {
      options.force = true;
      continue;
    }
    bool matched = false;
    for (const ValueOption& option : kValueOptions) {
      std::string value;
      if (!reader.value_of(arg, option.shortName.empty() ? "\x01" : option.shortName, option.longName, value, error))
        continue;
      if (!error.empty()) return ParseResult::kUsageError;
      if (!apply_value(std::string(option.longName), value, options, error)) return ParseResult::kUsageError;
      matched = true;
      break;
    }
    if (matched) continue;
    if (arg.size() > 1 && arg[0] == '-') {
      error = "unknown option " + arg;
      return ParseResult::kUsageError;
    }
    if (!take_input(arg, options, inputSeen, error)) return ParseResult::kUsageError;
  }
  error = fixed_alignment_misuse(options, inputSeen);
  if (!error.empty()) return ParseResult::kUsageError;
  if (!inputSeen && options.addFile.empty() && options.profileFiles.empty()) {
    error = "no input file given";
    return ParseResult::kUsageError;
  }
  const bool newMode =
      options.mode == RunMode::kConsistency || options.mode == RunMode::kTree || options.mode == RunMode::kFast;
  if (newMode && options.outFormat == OutFormat::kReport) {
    error = "-f report shows the designed strategy's run; use it with --mode designed (or auto)";
    return ParseResult::kUsageError;
  }
  if (newMode && options.orderGiven) {
    error = "--order sets the designed strategy's order; use it with --mode designed (or auto)";
    return ParseResult::kUsageError;
  }
  return ParseResult::kRun;
}

std::string align_help_text() {
  return "usage: ravlin-align [options] INPUT\n"
         "       ravlin-align [options] --add NEW --to ALIGNED\n"
         "       ravlin-align [options] --profile A --profile B\n"
         "\n"
         "Aligns the protein sequences of INPUT (a file, or - for standard input) and writes\n"
         "the alignment. INPUT may be FASTA (plain or aligned), Stockholm, Clustal, PIR,\n"
         "Molvane or ravlin's text format; the format is recognised from the content.\n"
         "\n"
         "Input and output:\n"
         "  -i, --in FILE          the input file (instead of INPUT)\n"
         "  -o, --output FILE      write the alignment to FILE (default: standard output); it is\n"
         "                         put in place only when the run succeeds\n"
         "      --force            replace FILE if it exists\n"
         "  -f, --outfmt FMT       fasta (fa, fas; default), clustal (clu, aln), stockholm (st,\n"
         "                         sto), msf (gcg), phylip (phy: relaxed, a row a line), a2m,\n"
         "                         report (ravlin's report), molvane, or a picture: html (a page)\n"
         "                         or svg\n"
         "      --informat FMT     fasta, clustal, stockholm, text, molvane or pir: do not guess\n"
         "      --output-order O   input (default) or aligned: the order of the rows\n"
         "      --width N          html and svg: columns a block, 10 to 3500 (default 60)\n"
         "      --colour SCHEME    html and svg: clustal (default), zappo, hydrophobicity or none\n"
         "\n"
         "Adding to alignments (their columns kept as they are; new columns only where\n"
         "the added sequences need them):\n"
         "      --add NEW          sequences to place, one by one, into the alignment --to gives\n"
         "      --to ALIGNED       the alignment (aligned FASTA, Stockholm or Clustal)\n"
         "      --profile A        twice: the alignments A and B joined, A's rows first\n"
         "\n"
         "Structure and anchors:\n"
         "  -s, --ss SOURCE        secondary structure for some or all sequences: FILE, ID=FILE,\n"
         "                         ID=FILE:CHAIN or ID=FILE:CHAIN:FROM-TO (residue numbers of\n"
         "                         the file); FASTA-style DSSP letters, mkdssp output\n"
         "                         (classic or mmCIF), PSIPRED .ss2/.horiz, or Stockholm SS\n"
         "                         lines; may be given more than once\n"
         "      --anchors FILE     anchors and gap-free groups, FASTA-style: per residue '-',\n"
         "                         '*' (group) or '1' to '5' (anchor)\n"
         "\n"
         "The run:\n"
         "      --mode MODE        auto (default), consistency, tree, fast or designed, see below\n"
         "      --order ORDER      designed mode: computed (default: from the pair scores),\n"
         "                         input, or the id of the sequence to align the others against\n"
         "      --params FILE      run settings from a ravlin parameter file (its data keys are\n"
         "                         ignored; its weight file is read unless --weights is given)\n"
         "      --weights FILE     score tables and gap penalties from a ravlin weight file\n"
         "  -t, --threads N        workers, 1 to 256 (default: every core)\n"
         "  -q, --quiet            print errors only\n"
         "  -h, --help             show this help\n"
         "  -V, --version          print the version\n"
         "\n"
         "Without --params the shipped settings (compiled in from data/) are used, chosen by\n"
         "how much of the input carries structure: ravlin-struct when every sequence has it,\n"
         "ravlin-partial when some do, ravlin-nostruct when none do (each a weight file\n"
         "and a few keys read after ravlin.parms, tuned on reference alignments for that\n"
         "case); the consistency mode reads ravlin-consistency (BLOSUM62) whatever the\n"
         "input, and when no sequence has structure weighs its pairs by the\n"
         "ravlin-nostruct table as well. The set used and why is said on standard error.\n"
         "\n"
         "Modes: every pair is aligned with the structure-aware scores; tree joins groups of\n"
         "sequences up a guide tree made from the pairs, consistency does the same scoring\n"
         "each join by how likely each pair's alignments make its residue pairs (directly\n"
         "and through third sequences); both then refine, and give each column a\n"
         "confidence (0-9).\n"
         "fast, for large families, aligns each sequence to at most 100 seeds, not every\n"
         "pair: its guide tree comes from those alignments, and the joins carry the same\n"
         "structure-aware scores (10,000 x 300 residues: about 70 s on 2 threads and\n"
         "360 MB; no refinement, no confidence).\n"
         "designed adds the sequences one by one in the order of their pair scores, as\n"
         "ravlin and ravlin-batch do, and keeps their limits (500 sequences of 3 to 4,000\n"
         "residues, 3,500 columns). auto takes consistency up to 1,000 million residue\n"
         "pairs (about 140 sequences of 300), tree up to 400 sequences and fast above, and\n"
         "designed for -f report or --order. tree, consistency and fast have no\n"
         "fixed limits: memory grows with the pairs in tree (about 4 bytes per residue per\n"
         "sequence, 200 x 300 residues: about 65 MB) and consistency (about 28 bytes:\n"
         "about 340 MB), with the input in fast.\n"
         "Exit status: 0 done, 1 an input or run error, 2 a usage error.\n"
         "Kernel: " +
         std::string(kernel_name(best_kernel())) +
         " (the fastest this machine has; RAVLIN_KERNEL=scalar|sse41|avx2|avx512 chooses another)\n";
}
