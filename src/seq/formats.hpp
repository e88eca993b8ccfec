// The sequence formats: one row each, with the code that parameter files,
// the menus and the reader dispatcher use. A new reader is one file and one
// row here (and its case in read_seq's dispatcher).
//
// Every reader reads one entry and returns:
//    1  an entry was read into the record;
//   -1  the input ended before an entry began;
//    0  a fault in the entry, already reported as a warning;
//   other negative values: the reader's own rejection of the entry
//      (kReadBadResidue, kReadTooMany, kReadTooFew), which ends the reading
//      silently.
#pragma once

#include <array>
#include <string_view>

inline constexpr int kFormatPir = 1;
inline constexpr int kFormatSprot = 2;
inline constexpr int kFormatMolvane = 3;
inline constexpr int kFormatPirComp = 4;
inline constexpr int kFormatText = 5;
inline constexpr int kFormatKeyboard = 6;

struct SeqFormat {
  int code;
  std::string_view name;   // as users name it on a command line
  bool fromParameterFile;  // a parameter file may name it in RAVLIN:DATA_FORMAT
};

inline constexpr std::array<SeqFormat, 6> kSeqFormats = {{
    {kFormatPir, "pir", true},
    {kFormatSprot, "swissprot", true},
    {kFormatMolvane, "molvane", true},
    {kFormatPirComp, "pir-compressed", true},
    {kFormatText, "text", true},
    {kFormatKeyboard, "keyboard", false},
}};

// The highest code a parameter file may name.
constexpr int highest_parameter_format() {
  int highest = 0;
  for (const SeqFormat& format : kSeqFormats)
    if (format.fromParameterFile && format.code > highest) highest = format.code;
  return highest;
}

// Reader rejections of an entry's residues; the reading loops treat them as
// the end of the input.
inline constexpr int kReadBadResidue = -20;
inline constexpr int kReadTooMany = -30;
inline constexpr int kReadTooFew = -40;
