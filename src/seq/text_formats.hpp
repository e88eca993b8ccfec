// Sequence files as other tools write them: FASTA (plain or aligned), the PIR
// layout of ">P1;ID" entries, and Stockholm and Clustal alignments. Each parser takes a
// whole file's text and returns its entries, or the first fault it finds
// with the line it stands on. Nothing here ends the process.
//
// The FASTA and Stockholm layouts are read once, here, for sequences and for
// structure (structure/ reads its state and anchor files through them): the
// callers differ only in which characters a row may hold.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

struct TextEntry {
  std::string id;           // first word of the header
  std::string description;  // the rest of the header, blanks around it removed
  std::string header;       // the whole header line as written, without '>' and line end
  std::string residues;     // upper case, gaps and a final '*' removed
  std::string aligned;      // the residues with a '-' for every gap as written (blanks and '*' removed)
  std::string structure;    // Stockholm's #=GR SS, on the residues only; empty when absent
  int line = 0;             // the header's line, from 1
};

struct TextFault {
  int line = 0;
  std::string message;  // names the sequence and says what to do
};

bool read_fasta_text(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault);
bool read_pir_text(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault);
bool read_stockholm_text(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault);
// Clustal: a "CLUSTAL" (or MUSCLE, PROBCONS) header line, then blocks of
// "NAME ROW [COUNT]" lines; lines that start with a blank (the conservation
// line) are skipped, and every row must have the same number of columns.
bool read_clustal_text(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault);
// The comment ("C;") and reference ("R;") lines PIR files may carry, which
// the PIR layout skips wherever they stand.
bool is_pir_annotation(std::string_view line);

// How a message shows a byte it rejects: 'c' when printable, else byte 0xNN.
std::string shown_byte(char ch);

// One line of data as written (its line end removed), with its number from 1.
struct DataLine {
  int line = 0;
  std::string_view text;
};

// One '>' entry of a FASTA file: the header (id, description, header, line
// set as in TextEntry; residues and structure empty) and its data lines.
struct FastaEntry {
  TextEntry head;
  std::vector<DataLine> data;
};

// In: a FASTA file's text. Lines of blanks only and ';' comment lines are
// skipped. Out: the entries, up to the first fault when there is one (then
// false): a header without an id, or data before the first header. A caller
// checks the data of the entries it got before reporting that fault, so
// that faults come in the order of the lines.
bool read_fasta_entries(std::string_view text, std::vector<FastaEntry>& entries, TextFault& fault);

// One named row of a Stockholm alignment: the text after the name on each of
// its lines, joined (blanks inside a line kept), and the line it first stands on.
struct StockholmRow {
  std::string id;
  std::string text;
  int line = 0;
};

// The rows of a Stockholm alignment up to its "//", each kind in the order
// its names first appear: the sequences and the "#=GR ID SS" structure rows;
// and the "#=GS ID DE" descriptions (the lines of one id joined by a blank).
struct StockholmRows {
  std::vector<StockholmRow> seqs, ss;
  std::map<std::string, std::size_t> seqIndex, ssIndex;  // id to its place in seqs, ss
  std::map<std::string, std::string> descriptions;
  // The row of that id, or null.
  const StockholmRow* seq_row(const std::string& id) const;
  const StockholmRow* ss_row(const std::string& id) const;
};

// Out: the rows, or the first fault: a sequence line without residues, or an
// SS line without states.
bool read_stockholm_rows(std::string_view text, StockholmRows& rows, TextFault& fault);
// The fault of an SS row whose columns are not its sequence's seqColumns.
TextFault ss_columns_fault(const StockholmRow& ss, std::size_t seqColumns);
