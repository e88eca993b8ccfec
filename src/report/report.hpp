// The report: every section's layout and the line printers they share.
#pragma once

#include <cstdio>
#include <span>
#include <string>

#include "align/align_score.hpp"
#include "seq/seq_record.hpp"

// Line printers.
void print_seq_id(std::FILE* stream, const char* id);
void print_divide(std::FILE* stream, char ch);
void print_res_line(std::FILE* stream, int seqIndex, const char* alignedText, int start, int len, int* count);
void print_struct_line(std::FILE* stream, const char* structText, int start, int len);
void print_seq_lumark(std::FILE* stream, const SeqRecord& record);

// Default ids ("Seq_%d" / "Seq%d") for the first multAlignNum records of mySeq
// that have no accession.
void set_seq_id_str(std::span<const int> alignOrder);
// The local date and time as calendar text with its newline.
std::string get_date();
// Maps a print position to a member position of the multiple alignment.
int get_malign_index(std::span<const int> alignOrder, int index, int byInput);

// Sections, in the order the report holds them.
void print_report_header(std::FILE* stream);
void print_pairwise_section(std::FILE* stream, std::span<const AlignRecord> pairs);
void print_sequences_section(std::FILE* stream, std::span<const int> alignOrder);
void print_pct_hom_section(std::FILE* stream, std::span<const int> alignOrder, const PctHomTable& pctHom);
void print_statistics(std::FILE* stream, const AlignRecord& malign);
void print_mult_align(std::FILE* stream, const AlignRecord& malign, std::span<const int> alignOrder);
