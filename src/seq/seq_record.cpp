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

namespace {

int dispatch_reader(std::FILE* input, SeqRecord& record, const SeqReading& how) {
  const int minRes = how.minRes, maxRes = how.maxRes;
  switch (how.format) {
    case kFormatPir:
      return read_seq_pir(input, record, minRes, maxRes, how.warnings);
    case kFormatSprot:
      return read_seq_sprot(input, record, how.warnings);
    case kFormatMolvane:
      return read_seq_molvane(input, record, minRes, maxRes, how.warnings);
    case kFormatPirComp: {
      const int result = read_seq_pir_comp(input, record);
      // Only the count is cut; the residue text stays as the reader left it.
      if (record.numRes > maxRes) record.numRes = maxRes;
      return result;
    }
    case kFormatText:
      return read_seq_text(input, record, minRes, maxRes);
    case kFormatKeyboard:
      return read_seq_kbd(input, how.output, record, minRes, maxRes, how.warnings);
    default:
      raise_failure("read_seq", "Illegal sequence format: %d\n", how.format);
  }
}

}  // namespace

int read_seq(std::FILE* input, SeqRecord& record, const SeqReading& how) {
  const int result = dispatch_reader(input, record, how);
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

std::optional<Failure> mread_seq(std::FILE* input, std::span<SeqRecord> records, int& count, int maxSeqs,
                                 const SeqReading& how, int& result) {
  return capture_failure("main", [&] {
    do {
      // The limit is tested only after a read, so a full table still gets one
      // more read; without room for it, the entry lands in a record of its own.
      SeqRecord scratch;
      const bool hasRoom = count >= 0 && static_cast<std::size_t>(count) < records.size();
      result = read_seq(input, hasRoom ? records[count] : scratch, how);
      if (result != 1) break;
      ++count;
    } while (count < maxSeqs);
  });
}

std::optional<Failure> mget_seqs(const std::string& fname, std::vector<SeqRecord>& records, int maxSeqs,
                                 const SeqReading& how) {
  const UniqueFile input = open_file(fname, "r");
  if (!input) return make_failure(FailureKind::kFault, "mget_seqs", "Cannot open data file: %s", fname.c_str());
  std::vector<SeqRecord> table(static_cast<std::size_t>(std::max(maxSeqs, 0)));
  int count = 0, result = 0;
  if (std::optional<Failure> failure = mread_seq(input.get(), table, count, maxSeqs, how, result)) {
    failure->file = fname;
    return failure;
  }
  if (result == 0)
    return make_failure(FailureKind::kFault, "mget_seqs", "Cannot continue alignment until errors fixed...");
  std::fprintf(how.output, "\nNumber of sequences to align: %d", count);
  if (count < 2) return make_failure(FailureKind::kFault, "mget_seqs", "Must have 2 or more sequences to align.");
  table.resize(static_cast<std::size_t>(count));
  records = std::move(table);
  return std::nullopt;
}
