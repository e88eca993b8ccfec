#include "report/line_printers.hpp"

#include <cstring>
#include <ctime>

namespace {

constexpr int kIdWidth = 12;

void write_blanks(std::FILE* stream, int count) {
  for (int i = 0; i < count; ++i) std::fputc(' ', stream);
}

void write_line_label(std::FILE* stream, const char* label) {
  std::fputc(' ', stream);
  print_seq_id(stream, label);
  std::fputs(": ", stream);
}

bool is_upper_letter(char ch) { return ch >= 'A' && ch <= 'Z'; }

int residue_number(const ViewRow& row, int count) {
  if (count >= 0 && count < static_cast<int>(row.resNums.size())) return row.resNums[static_cast<std::size_t>(count)];
  return count;
}

}  // namespace

void print_seq_id(std::FILE* stream, const char* id) {
  if (id == nullptr) id = "";
  write_blanks(stream, kIdWidth - static_cast<int>(std::strlen(id)));
  std::fputs(id, stream);
}

void print_divide(std::FILE* stream, char ch, int lineLen) {
  std::fputs("\n", stream);
  for (int i = 0; i < lineLen + 30; ++i) std::fputc(ch, stream);
  std::fputs("\n\n", stream);
}

void print_res_line(std::FILE* stream, const ViewRow& row, const char* text, int start, int len, int* count,
                    int lineLen) {
  write_line_label(stream, row.id.c_str());
  // An empty block ends the line here, without even its newline.
  if (len <= 0) return;
  for (int i = start; i < start + len; ++i) {
    const char ch = text != nullptr ? text[i] : ' ';
    std::fputc(ch, stream);
    if (ch != ' ') ++*count;
  }
  // Padding keeps the residue numbers of a short last block in their column.
  write_blanks(stream, lineLen - len);
  std::fprintf(stream, "%7d\n", residue_number(row, *count));
  std::fflush(stream);
}

void print_struct_line(std::FILE* stream, const char* structText, int start, int len) {
  write_line_label(stream, "Struct");
  if (len <= 0) return;
  // Lower case sets structure lines apart from the residue lines.
  for (int i = start; i < start + len; ++i) {
    const char ch = structText != nullptr ? structText[i] : ' ';
    std::fputc(is_upper_letter(ch) ? ch - 'A' + 'a' : ch, stream);
  }
  std::fputs("\n", stream);
  std::fflush(stream);
}

void print_seq_lumark(std::FILE* stream, const SeqRecord& record) {
  std::fputs("PSEQ\n", stream);
  if (record.title) std::fprintf(stream, "n%s\n", record.title->c_str());
  if (record.acc) std::fprintf(stream, "A%s\n", record.acc->c_str());
  std::fprintf(stream, "r%s\n", record.pRes.c_str());
  if (record.sRes) std::fprintf(stream, "S%s\n", record.sRes->c_str());
  if (record.uRes) std::fprintf(stream, "G%s\n", record.uRes->c_str());
  std::fputs("\n", stream);
}

std::string get_date() {
  const std::time_t now = std::time(nullptr);
  const std::tm* local = std::localtime(&now);
  if (local == nullptr) return "\n";
  return std::asctime(local);
}
