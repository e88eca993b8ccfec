#include "seq/seq_record.hpp"

#include <algorithm>
#include <cstdlib>

#include "seq/keyboard_reader.hpp"
#include "seq/molvane_reader.hpp"
#include "seq/pir_comp_reader.hpp"
#include "seq/pir_reader.hpp"
#include "seq/sprot_reader.hpp"
#include "seq/text_reader.hpp"
#include "shell/errors.hpp"
#include "shell/text_input.hpp"

std::vector<SeqRecord> mySeq(kMaxSeqs);
int multAlignNum = 0;

namespace {

int dispatch_reader(std::FILE* input, std::FILE* output, SeqRecord& record, int format, int minRes, int maxRes) {
  switch (format) {
    case kFormatPir:
      return read_seq_pir(input, record, minRes, maxRes);
    case kFormatSprot:
      return read_seq_sprot(input, record);
    case kFormatMolvane:
      return read_seq_molvane(input, record, minRes, maxRes);
    case kFormatPirComp: {
      const int result = read_seq_pir_comp(input, record);
      // Only the count is cut; the residue text stays as the reader left it.
      if (record.numRes > maxRes) record.numRes = maxRes;
      return result;
    }
    case kFormatText:
      return read_seq_text(input, record, minRes, maxRes);
    case kFormatKeyboard:
      return read_seq_kbd(input, output, record, minRes, maxRes);
    default:
      fatal_err("read_seq", "Illegal sequence format: %d\n", format);
  }
}

}  // namespace

int read_seq(std::FILE* input, std::FILE* output, SeqRecord& record, int format, int minRes, int maxRes) {
  const int result = dispatch_reader(input, output, record, format, minRes, maxRes);
  if (result == 1) fill_missing_fields(record);
  return result;
}

void fill_missing_fields(SeqRecord& record) {
  if (record.resNums.empty()) {
    record.resNums = checked_vector<std::int32_t>(kResNumsLen, "read_seq: resNums");
    for (int k = 0; k < kResNumsLen; ++k) record.resNums[k] = k;
  }
  const auto numRes = static_cast<std::size_t>(std::max(record.numRes, 0));
  if (!record.sRes) {
    record.sRes = checked_string(numRes, 'X', "read_seq: sRes");
    record.hasSRes = 0;
  }
  if (!record.uRes) {
    record.uRes = checked_string(numRes, '-', "read_seq: uRes");
    record.hasURes = 0;
  }
}

int mread_seq(std::FILE* input, std::FILE* output, std::span<SeqRecord> records, int& count, int maxSeqs, int format,
              int minRes, int maxRes) {
  int result;
  do {
    // The limit is tested only after a read, so a full table still gets one
    // more read; without room for it, the entry lands in a record of its own.
    SeqRecord scratch;
    const bool hasRoom = count >= 0 && static_cast<std::size_t>(count) < records.size();
    result = read_seq(input, output, hasRoom ? records[count] : scratch, format, minRes, maxRes);
    if (result != 1) break;
    ++count;
  } while (count < maxSeqs);
  return result;
}

int mget_seqs(const std::string& fname, std::FILE* output, std::span<SeqRecord> records, int format, int maxSeqs,
              int minRes, int maxRes, int& numSeqs) {
  const UniqueFile input = open_file(fname, "r");
  if (!input) fatal_err("mget_seqs", "Cannot open data file: %s", fname.c_str());
  // Never count more sequences than the table holds.
  const int limit = static_cast<int>(std::min<long long>(maxSeqs, static_cast<long long>(records.size())));
  int count = 0;
  if (mread_seq(input.get(), output, records, count, limit, format, minRes, maxRes) == 0)
    fatal_err("mget_seqs", "Cannot continue alignment until errors fixed...");
  std::fprintf(output, "\nNumber of sequences to align: %d", count);
  if (count < 2) fatal_err("mget_seqs", "Must have 2 or more sequences to align.");
  numSeqs = count;
  return 1;
}

void free_seq(SeqRecord& record) {
  // Only the texts go; the numbering table is kept on purpose.
  record.title.reset();
  record.acc.reset();
  record.organism.reset();
  record.reference.reset();
  record.pRes.clear();
  record.pRes.shrink_to_fit();
  record.sRes.reset();
  record.uRes.reset();
  record.header.reset();
}

int get_seq(std::FILE* input, std::FILE* output, SeqRecord& record, int format, int minRes, int maxRes) {
  // Typed sequences come from the terminal itself, not from a file.
  if (format == kFormatKeyboard) return read_seq(input, output, record, format, minRes, maxRes);
  show_prompt(output, "\n Enter the name of the sequence file.\n");
  std::fflush(output);
  std::string fname;
  if (!read_word(input, fname)) return -1;
  const UniqueFile data = open_file(fname, "r");
  if (!data) {
    warn_err("get_seq", "Cannot open data file: %s", fname.c_str());
    return 0;
  }
  const int result = read_seq(data.get(), output, record, format, minRes, maxRes);
  if (result == 1) {
    std::fprintf(output, "\nProtein: %s\n", record.title.value_or("").c_str());
    std::fprintf(output, "Number of amino acids: %d\n", record.numRes);
  }
  return result;
}

int get_top_num(std::FILE* input, std::FILE* output, int min, int max) {
  const std::string prompt = format_text("\n Enter a number from %d to %d.\n", min, max);
  for (;;) {
    show_prompt(output, prompt.c_str());
    std::fflush(output);
    std::string word;
    if (!read_word(input, word)) return -1;
    const int num = std::atoi(word.c_str());
    if (num >= min && num <= max) return num;
    std::fprintf(output, "\n Error, %d is not between %d and %d.\n", num, min, max);
  }
}
