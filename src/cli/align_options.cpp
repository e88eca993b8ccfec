#include "cli/align_options.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <string_view>

const char* const kAlignUsage =
    "usage: ravlin-align [options] INPUT\n"
    "Try 'ravlin-align --help' for more information.\n";

namespace {

constexpr int kMaxThreads = 256;

struct NamedFormat {
  std::string_view name;
  OutFormat format;
};

constexpr NamedFormat kOutFormats[] = {
    {"fasta", OutFormat::kFasta},         {"fa", OutFormat::kFasta},         {"clustal", OutFormat::kClustal},
    {"aln", OutFormat::kClustal},         {"stockholm", OutFormat::kStockholm}, {"sto", OutFormat::kStockholm},
    {"report", OutFormat::kReport},       {"molvane", OutFormat::kMolvane},
};

constexpr std::string_view kInFormats[] = {"fasta", "stockholm", "text", "molvane", "pir"};

std::string lower_case(std::string_view text) {
  std::string out(text);
  for (char& ch : out) ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
  return out;
}

bool parse_threads(const std::string& text, int& threads) {
  const char* end = text.data() + text.size();
  const auto [ptr, ec] = std::from_chars(text.data(), end, threads);
  return ec == std::errc() && ptr == end && threads >= 1 && threads <= kMaxThreads;
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
    const std::string wanted = lower_case(value);
    const auto found = std::find_if(std::begin(kOutFormats), std::end(kOutFormats),
                                    [&](const NamedFormat& f) { return f.name == wanted; });
    if (found == std::end(kOutFormats)) {
      error = "unknown output format '" + value + "' (fasta, clustal, stockholm, report, molvane)";
      return false;
    }
    options.outFormat = found->format;
  } else if (name == "--informat") {
    const std::string wanted = lower_case(value);
    if (std::find(std::begin(kInFormats), std::end(kInFormats), wanted) == std::end(kInFormats)) {
      error = "unknown input format '" + value + "' (fasta, stockholm, text, molvane, pir)";
      return false;
    }
    options.inFormat = wanted;
  } else if (name == "--order") {
    options.order = value;
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
  } else if (name == "--ss") {
    options.ssFiles.push_back(value);
  } else if (name == "--anchors") {
    options.anchorsFile = value;
  } else if (name == "--threads") {
    if (!parse_threads(value, options.threads)) {
      error = "--threads takes a whole number from 1 to 256, not '" + value + "'";
      return false;
    }
  }
  return true;
}

struct ValueOption {
  std::string_view shortName;
  std::string_view longName;
};

constexpr ValueOption kValueOptions[] = {
    {"-o", "--output"},  {"-f", "--outfmt"},   {"", "--informat"}, {"", "--order"},   {"", "--output-order"},
    {"", "--params"},    {"", "--weights"},    {"-s", "--ss"},     {"", "--anchors"}, {"-t", "--threads"},
};

}  // namespace

ParseResult parse_align_options(int argc, char** argv, AlignOptions& options, std::string& error) {
  OptionReader reader{argc, argv};
  bool inputSeen = false;
  for (; reader.at < argc; ++reader.at) {
    const std::string arg = argv[reader.at];
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
    if (inputSeen) {
      error = "more than one input file (" + options.input + ", " + arg + ")";
      return ParseResult::kUsageError;
    }
    options.input = arg;
    inputSeen = true;
  }
  if (!inputSeen) {
    error = "no input file given";
    return ParseResult::kUsageError;
  }
  return ParseResult::kRun;
}
