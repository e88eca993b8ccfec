// Sections: read_seq_text at the end; before it, in reading order: the entry's
// header (code, title, residue numbering), its data lines, storing them.
#include "seq/text_reader.hpp"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "shell/errors.hpp"
#include "shell/strutil.hpp"
#include "shell/text_input.hpp"

namespace {

constexpr std::size_t kMaxCodeLen = 12;
constexpr std::string_view kAnchorSymbols = "*-12345";
constexpr std::string_view kStructCodes = "BCHTX";

// What the data lines of one entry have given so far. Symbols are kept up to
// the room of one sequence; the counts go on past it, so that an overlong
// collection still fails the checks that compare it with the residues.
struct EntryData {
  std::string res;
  std::string str;
  std::string anc;
  long long numRes = 0;
  long long numStr = 0;
  long long numAnc = 0;
};

bool skip_to_entry(std::FILE* input) {
  int ch;
  while ((ch = std::fgetc(input)) != EOF)
    if (ch == '>') return true;
  return false;
}

std::string read_seq_id_str(std::FILE* input) {
  std::string code;
  if (!read_word(input, code)) raise_failure("read_seq_id_str", "Expecting sequence but EOF found.");
  code = as_c_text(code);
  if (code.size() > kMaxCodeLen) raise_failure("read_seq_id_str", "Sequence ID code too long at: %s", code.c_str());
  return code;
}

// Codes that begin with "title" in any letter case mark an entry without an accession.
std::string acc_from_code(const std::string& code) {
  std::string folded = code;
  to_upper(folded.c_str(), folded.data());
  return folded.compare(0, 5, "TITLE") == 0 ? std::string() : code;
}

// The header line loses its leading blanks and its last character, which is
// the line end when the line fitted into one read. An empty title is fine.
std::string read_seq_title(const std::string& header) {
  const auto start = header.find_first_not_of(" \t");
  if (start == std::string::npos) return std::string();
  std::string title = header.substr(start);
  title.pop_back();
  return title;
}

// Matches piece against "%d-%d]": the closing bracket is not needed.
bool scan_range(std::string_view piece, long long& first, long long& last) {
  std::size_t pos = 0;
  int from = 0;
  int to = 0;
  if (!scan_int(piece, pos, from)) return false;
  first = from;
  if (pos >= piece.size() || piece[pos] != '-') return false;
  ++pos;
  if (!scan_int(piece, pos, to)) return false;
  last = to;
  return true;
}

// Entry k holds k unless the header's ranges number the residues otherwise;
// numbers that do not fit the table are dropped.
std::vector<std::int32_t> build_res_nums(const std::string& header) {
  std::vector<std::int32_t> resNums = checked_vector<std::int32_t>(kResNumsLen, "resId");
  for (int k = 0; k < kResNumsLen; ++k) resNums[k] = k;
  int next = 1;
  std::size_t start = 0;
  while (start <= header.size() && next < kResNumsLen) {
    auto end = header.find('[', start);
    if (end == std::string::npos) end = header.size();
    long long first = 0;
    long long last = 0;
    if (scan_range(std::string_view(header).substr(start, end - start), first, last))
      for (long long num = first; num <= last && next < kResNumsLen; ++num)
        resNums[next++] = static_cast<std::int32_t>(num);
    start = end + 1;
  }
  return resNums;
}

void collect(std::string_view symbols, std::string& kept, long long& count) {
  count += static_cast<long long>(symbols.size());
  const auto room = static_cast<std::size_t>(kMaxRes) - kept.size();
  kept.append(symbols.substr(0, std::min(room, symbols.size())));
}

bool made_of(std::string_view text, std::string_view allowed) {
  return text.find_first_not_of(allowed) == std::string_view::npos;
}

// Classifies one data line (as read, line end included) and collects its symbols.
void add_data_line(const std::string& line, EntryData& data) {
  std::string clean(line.size() + 1, '\0');
  const int kept = remove_blanks(line.c_str(), static_cast<int>(line.size()), clean.data());
  to_upper(clean.c_str(), clean.data());
  clean.resize(static_cast<std::size_t>(kept));
  if (clean.empty()) return;
  if (made_of(clean, kAnchorSymbols)) {
    collect(clean, data.anc, data.numAnc);
  } else if (made_of(clean, kStructCodes)) {
    collect(clean, data.str, data.numStr);
  } else {
    for (const char ch : clean)
      if (ch < 'A' || ch > 'Z') raise_failure("read_seq_data", "Illegal input line: %s", line.c_str());
    collect(clean, data.res, data.numRes);
  }
}

bool ends_entry(int ch) { return ch == '>' || ch == '\n' || ch == EOF; }

// Reads data lines until a header, an empty line or the end of the input, and
// returns the character that stopped the reading.
int read_seq_data(std::FILE* input, EntryData& data, int maxRes) {
  // The residue room is kMaxRes whatever the caller allows; the message shows it.
  const long long limit = std::min(maxRes, kMaxRes);
  int ch = std::fgetc(input);
  while (!ends_entry(ch)) {
    if (ch == '#') {
      skip_line(input, kLineRead);
    } else {
      std::string rest;
      read_line(input, rest, kLineRead - 1);
      add_data_line(as_c_text(static_cast<char>(ch) + rest), data);
      if (data.numRes > limit) raise_failure("read_seq_data", "Sequence has > %d amino acids", kMaxRes);
    }
    ch = std::fgetc(input);
  }
  return ch;
}

void store_seq_data(EntryData& data, SeqRecord& record, int minRes) {
  const auto numRes = static_cast<std::size_t>(data.numRes);
  record.hasSRes = 0;
  record.hasURes = 0;
  record.numRes = static_cast<std::int32_t>(data.numRes);
  if (data.numRes < minRes) raise_failure("store_seq_data", "Sequence has < %d amino acids.", minRes);
  if (data.numStr != 0 && data.numStr != data.numRes)
    raise_failure("store_seq_data", "Primary/secondary structures do not line up.");
  if (data.numAnc != 0 && data.numAnc != data.numRes)
    raise_failure("store_seq_data", "Primary/anchor symbols do not line up.");
  // Without structure or anchor lines the fillers stand in.
  record.pRes = std::move(data.res);
  record.sRes = data.numStr != 0 ? std::move(data.str) : checked_string(numRes, 'X', "store_seq_data: sRes");
  record.uRes = data.numAnc != 0 ? std::move(data.anc) : checked_string(numRes, '-', "store_seq_data: uBuf");
  record.hasSRes = data.numStr != 0 ? 1 : 0;
  record.hasURes = data.numAnc != 0 ? 1 : 0;
}

}  // namespace

int read_seq_text(std::FILE* input, SeqRecord& record, int minRes, int maxRes) {
  if (!skip_to_entry(input)) return -1;
  const std::string code = read_seq_id_str(input);
  std::string header;
  read_line(input, header, kLineRead);
  header = as_c_text(header);
  record.acc = acc_from_code(code);
  record.title = read_seq_title(header);
  record.resNums = build_res_nums(header);
  EntryData data;
  const int stop = read_seq_data(input, data, maxRes);
  // The next call starts at the character that ended this entry.
  if (stop != EOF) std::ungetc(stop, input);
  store_seq_data(data, record, minRes);
  return 1;
}
