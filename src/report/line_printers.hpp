// The report's line printers, shared by its sections and layouts.
#pragma once

#include <cstdio>
#include <string>

#include "report/alignment_view.hpp"
#include "seq/seq_record.hpp"

// id right-aligned in 12 columns; a longer id is written whole.
void print_seq_id(std::FILE* stream, const char* id);
// A blank line, lineLen + 30 copies of ch, a blank line.
void print_divide(std::FILE* stream, char ch, int lineLen);
// One residue line of row: text[start .. start+len-1], padded to lineLen
// columns and ended by the residue number of the count-th residue; count
// goes up by the residues printed. An empty block ends after the label.
void print_res_line(std::FILE* stream, const ViewRow& row, const char* text, int start, int len, int* count,
                    int lineLen);
// One structure line, codes in lower case; not padded, no number.
void print_struct_line(std::FILE* stream, const char* structText, int start, int len);
// One Molvane-format entry.
void print_seq_lumark(std::FILE* stream, const SeqRecord& record);
// The local date and time as calendar text with its newline.
std::string get_date();
