// ravlin-align's command line: what it asks for, and the parsing of it.
#pragma once

#include <string>
#include <vector>

#include "report/residue_colours.hpp"

enum class OutFormat { kFasta, kClustal, kStockholm, kMsf, kPhylip, kA2m, kReport, kMolvane, kHtml, kSvg };

// How the alignment is built: auto picks consistency or fast by the input's
// size; designed is the strategy of ravlin and ravlin-batch.
enum class RunMode { kAuto, kConsistency, kTree, kFast, kDesigned };

struct AlignOptions {
  std::string input;                      // a file, or "-" for standard input
  std::string addFile;                    // --add: sequences to place into the alignment of toFile
  std::string toFile;                     // --to: an alignment kept as it is
  std::vector<std::string> profileFiles;  // --profile twice: two alignments joined, each kept as it is
  std::string inFormat;                   // empty: recognised from the content
  std::string output;                     // empty: standard output
  bool force = false;                     // replace an existing output file
  OutFormat outFormat = OutFormat::kFasta;
  std::string order = "computed";    // computed, input, or a sequence's id
  bool alignedOutputOrder = false;   // rows in the alignment's order
  std::string paramsFile;            // run settings; empty: the shipped ones
  std::string weightsFile;           // score tables and gap penalties; empty: as the settings say
  std::vector<std::string> ssFiles;  // structure sources, "FILE", "ID=FILE" or "ID=FILE:CHAIN"
  std::string anchorsFile;
  int pictureWidth = 60;  // html and svg: columns a block
  ColourScheme colour = ColourScheme::kClustal;
  int threads = 0;  // 0: every available core
  RunMode mode = RunMode::kAuto;
  bool orderGiven = false;  // --order asked for input order or a sequence
  bool quiet = false;
};

enum class ParseResult { kRun, kHelp, kVersion, kUsageError };

// Parses argv into options; on kUsageError, error holds a one-line message.
ParseResult parse_align_options(int argc, char** argv, AlignOptions& options, std::string& error);

// The short usage shown with a usage error, and the whole help text.
extern const char* const kAlignUsage;
std::string align_help_text();
