// Sections: read_seq_molvane at the end; before it, finding an entry and
// taking its tagged lines.
#include "seq/molvane_reader.hpp"

#include <algorithm>
#include <cctype>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>

#include "shell/errors.hpp"
#include "shell/limits.hpp"
#include "shell/strutil.hpp"
#include "shell/text_input.hpp"

namespace {

const char* const kModule = "read_seq_molvane";
constexpr int kEntryLineRead = 3998;  // one line inside an entry

// The texts of one entry as they are collected, before the lengths rule.
struct MolvaneTexts {
  std::string residues;
  std::string structure;
  std::string grouping;
};

// A line counts as the start only when "PSEQ" is its single word.
bool is_start_line(const std::string& line) {
  std::size_t words = 0;
  std::string first;
  std::size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && std::isspace(static_cast<unsigned char>(line[i]))) ++i;
    if (i == line.size()) break;
    const std::size_t begin = i;
    while (i < line.size() && !std::isspace(static_cast<unsigned char>(line[i]))) ++i;
    if (++words == 1) first = line.substr(begin, i - begin);
  }
  return words == 1 && first == "PSEQ";
}

bool find_entry_start(std::FILE* stream) {
  std::string line;
  while (read_text_line(stream, line, kLineRead))
    if (is_start_line(line)) return true;
  return false;
}

// Everything behind the tag up to, not including, the line's last character,
// which is its newline unless the file ended without one or a zero byte cut
// the line; either way one character goes.
std::string tag_value(const std::string& line, const char* module) {
  if (line.size() < 2) return std::string();
  std::string value = checked_string(line.size() - 2, ' ', module);
  line.copy(value.data(), value.size(), 1);
  return value;
}

// The texts grow with the entry rather than stopping at a fixed size.
void append_text(std::string& text, const std::string& value, const char* module) {
  checked_alloc(module, [&] { text += value; });
}

enum class LineKind { kMore, kEnd, kUnknown };

// The tags of one-line values, each a text of the record (a later line
// replaces an earlier one), and the tags whose values are joined into the
// residues, structure and groups. The module names the text when memory
// runs out.
struct ValueTag {
  char tag;
  std::optional<std::string> SeqRecord::*value;
  const char* module;
};
const ValueTag kValueTags[] = {{'A', &SeqRecord::acc, "read_seq_molvane:acc"},
                               {'n', &SeqRecord::title, "read_seq_molvane:title"},
                               {'o', &SeqRecord::organism, "read_seq_molvane:organism"},
                               {'i', &SeqRecord::reference, "read_seq_molvane:reference"}};
struct TextTag {
  char tag;
  std::string MolvaneTexts::*text;
  const char* module;
};
const TextTag kTextTags[] = {{'r', &MolvaneTexts::residues, "read_seq_molvane:pRes"},
                             {'S', &MolvaneTexts::structure, "read_seq_molvane:sRes"},
                             {'G', &MolvaneTexts::grouping, "read_seq_molvane:uRes"}};

// A line cut to nothing by a zero byte reads '\0' as its tag, which is no tag.
LineKind take_line(const std::string& line, SeqRecord& seq, MolvaneTexts& texts) {
  const char tag = line[0];
  for (const ValueTag& v : kValueTags) {
    if (v.tag != tag) continue;
    seq.*v.value = tag_value(line, v.module);
    return LineKind::kMore;
  }
  for (const TextTag& t : kTextTags) {
    if (t.tag != tag) continue;
    append_text(texts.*t.text, tag_value(line, t.module), t.module);
    return LineKind::kMore;
  }
  if (tag == 'K' || tag == 'P' || tag == 'T') return LineKind::kMore;  // read and left aside
  return tag == '\n' ? LineKind::kEnd : LineKind::kUnknown;
}

std::string folded_upper(const std::string& text) {
  std::string upper = checked_string(text.size(), ' ', "read_seq_molvane:pRes");
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char ch = text[i];
    upper[i] = ch >= 'a' && ch <= 'z' ? static_cast<char>(ch - 'a' + 'A') : ch;
  }
  return upper;
}

}  // namespace

int read_seq_molvane(std::FILE* stream, SeqRecord& seq, int /*minRes*/, int /*maxRes*/, const WarningSink& warnings) {
  seq.numRes = 0;
  if (!find_entry_start(stream)) return -1;

  seq.hasSRes = 1;
  seq.hasURes = 1;
  MolvaneTexts texts;
  std::string line;
  for (bool ended = false; !ended;) {
    if (!read_text_line(stream, line, kEntryLineRead)) {
      warn(warnings, kModule, "Unexpected EOF in sequence file: '%s'", seq.title.value_or("").c_str());
      return -1;
    }
    switch (take_line(line, seq, texts)) {
      case LineKind::kMore:
        break;
      case LineKind::kEnd:
        ended = true;
        break;
      case LineKind::kUnknown:
        warn(warnings, kModule, "Cannot parse line in sequence file: '%s'", line.c_str());
        return 0;
    }
  }

  const int resLen = static_cast<int>(texts.residues.size());
  int structLen = static_cast<int>(texts.structure.size());
  int groupLen = static_cast<int>(texts.grouping.size());
  if (structLen == 0) {
    seq.hasSRes = 0;
    texts.structure = checked_string(static_cast<std::size_t>(resLen), 'X', "read_seq_molvane:sRes");
    structLen = resLen;
  }
  if (groupLen == 0) {
    seq.hasURes = 0;
    texts.grouping = checked_string(static_cast<std::size_t>(resLen), '-', "read_seq_molvane:uRes");
    groupLen = resLen;
  }
  // One matching text is enough to accept the entry.
  if (structLen != resLen && groupLen != resLen) {
    warn(warnings, kModule, "Residues/Structure/Grouping align problems: %d %d %d", resLen, structLen, groupLen);
    return 0;
  }
  seq.pRes = folded_upper(texts.residues);
  seq.sRes = fit_text(texts.structure, resLen, 'X', "read_seq_molvane:sRes");
  seq.uRes = fit_text(texts.grouping, resLen, '-', "read_seq_molvane:uRes");
  seq.numRes = resLen;
  return 1;
}
