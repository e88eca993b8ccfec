#include "report/alignment_writers.hpp"

#include <algorithm>

#include "report/line_printers.hpp"
#include "shell/errors.hpp"

namespace {

void print_consensus_line(std::FILE* stream, const std::string& consensus, int start, int len) {
  std::fputc(' ', stream);
  print_seq_id(stream, "Summary");
  std::fputs(": ", stream);
  for (int c = start; c < start + len; ++c) std::fputc(consensus[static_cast<std::size_t>(c)], stream);
  std::fputs("\n", stream);
  std::fflush(stream);
}

std::string copy_text(const std::string& text, const char* module) {
  return checked_alloc(module, [&] { return text; });
}

}  // namespace

void write_blocks_layout(std::FILE* stream, const AlignmentView& view, const PrintOptions& options) {
  const int lineLen = options.resLineLen;
  std::vector<int> counts(view.rows.size(), 0);
  int remaining = view.width;
  if (remaining < 1 || lineLen < 1) return;
  for (int start = 0; remaining > 0; start += lineLen) {
    const int len = std::min(remaining, lineLen);
    remaining -= len;
    std::fputs("\n", stream);
    for (std::size_t r = 0; r < view.rows.size(); ++r) {
      const ViewRow& row = view.rows[r];
      print_res_line(stream, row, row.residues.c_str(), start, len, &counts[r], lineLen);
      if (row.hasStructure) print_struct_line(stream, row.structure.c_str(), start, len);
    }
    print_consensus_line(stream, view.consensus, start, len);
  }
}

void write_molvane_layout(std::FILE* stream, const AlignmentView& view) {
  for (const ViewRow& row : view.rows) {
    SeqRecord record;
    record.title = copy_text(row.title, "print_sequence");
    record.acc = copy_text(row.id, "print_sequence");
    record.pRes = copy_text(row.residues, "print_sequence");
    record.sRes = copy_text(row.structure, "print_sequence");
    record.uRes = copy_text(row.groups, "print_sequence");
    record.numRes = view.width;
    print_seq_lumark(stream, record);
  }
}
