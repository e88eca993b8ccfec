// Sections: read_input_seqs and short_id at the end; before them, reading
// the bytes, recognising the format, the two families of readers (whole-text
// parsers and the entry readers of ravlin's own formats) and the checks.
#include "cli/input_reading.hpp"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <map>
#include <set>

#include "cli/failure_text.hpp"
#include "seq/seq_record.hpp"
#include "seq/text_formats.hpp"
#include "shell/limits.hpp"
#include "shell/text_input.hpp"
#include "structure/structure_source.hpp"

namespace {

constexpr std::size_t kIdShown = 12;  // ids the report shows whole
constexpr std::size_t kIdKept = 8;    // characters a long id keeps before its number

bool read_bytes(const std::string& path, std::string& text, std::string& error) {
  if (path != "-") return read_text_file(path, text, error);
  text.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
  text = with_newlines(std::move(text));
  return true;
}

std::string where(const std::string& path) { return path == "-" ? std::string("standard input") : path; }

std::size_t trimmed_size(std::string_view line) {
  const std::size_t start = line.find_first_not_of(" \t\r");
  if (start == std::string_view::npos) return 0;
  return line.find_last_not_of(" \t\r") - start + 1;
}

bool blank_line(std::string_view line) { return line.find_first_not_of(" \t\r\f\v") == std::string_view::npos; }

std::string first_word(std::string_view line) {
  const std::size_t start = line.find_first_not_of(" \t");
  if (start == std::string_view::npos) return {};
  const std::size_t end = line.find_first_of(" \t", start);
  return std::string(line.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start));
}

bool is_pir_header(std::string_view line) {
  return line.size() > 4 && line[0] == '>' && std::isupper(static_cast<unsigned char>(line[1])) &&
         std::isalnum(static_cast<unsigned char>(line[2])) && line[3] == ';';
}

// Symbols of a data line of ravlin's text format, blanks removed, upper case.
std::string cleaned(std::string_view line) {
  std::string out;
  for (const char ch : line)
    if (!std::isspace(static_cast<unsigned char>(ch))) out.push_back(static_cast<char>(std::toupper(ch)));
  return out;
}

bool made_of(const std::string& text, std::string_view allowed) {
  return text.find_first_not_of(allowed) == std::string::npos;
}

// ravlin's text format and FASTA look alike; an entry's lines of structure
// letters (or anchor symbols) as many as its residues tell the text format.
struct EntryCounts {
  std::string id;
  std::size_t residues = 0, structure = 0, anchors = 0;
};

std::vector<EntryCounts> count_text_lines(const std::vector<std::string_view>& lines) {
  std::vector<EntryCounts> entries;
  bool inData = false;
  for (const std::string_view line : lines) {
    if (!line.empty() && line[0] == '>') {
      entries.push_back({first_word(line.substr(1)), 0, 0, 0});
      inData = true;
      continue;
    }
    if (blank_line(line)) inData = false;
    if (!inData || entries.empty() || line[0] == '#') continue;
    const std::string symbols = cleaned(line);
    if (made_of(symbols, "*-12345"))
      entries.back().anchors += symbols.size();
    else if (made_of(symbols, "BCHTX"))
      entries.back().structure += symbols.size();
    else
      entries.back().residues += symbols.size();
  }
  return entries;
}

std::string guess_fasta_or_text(const std::vector<std::string_view>& lines, std::string& note) {
  const std::vector<EntryCounts> entries = count_text_lines(lines);
  const EntryCounts* misfit = nullptr;
  for (const EntryCounts& e : entries) {
    const bool fits = (e.structure > 0 && e.structure == e.residues) || (e.anchors > 0 && e.anchors == e.residues);
    if (fits) {
      note = "read as ravlin's text format: the entry " + e.id +
             " has structure or anchor lines as long as its residues (--informat fasta reads it as FASTA)";
      return "text";
    }
    if (misfit == nullptr && (e.structure > 0 || e.anchors > 0)) misfit = &e;
  }
  if (misfit != nullptr)
    note = "read as FASTA: lines of sequence " + misfit->id +
           " made only of structure letters (B C H T X) or anchor symbols are taken as residues, since they "
           "are not as long as its residues (--informat text reads them as structure)";
  return "fasta";
}

std::string guess_format(std::string_view text, std::string& note) {
  const std::vector<std::string_view> lines = split_lines(text);
  bool preamble = false;  // lines before the first '>', which only ravlin's text format allows
  for (const std::string_view line : lines) {
    if (blank_line(line)) continue;
    if (line.starts_with("# STOCKHOLM")) return "stockholm";
    if (line.starts_with("CLUSTAL")) return "clustal";
    if (is_pir_header(line)) return "pir-fasta";
    if (line[0] == '>') {
      if (!preamble) return guess_fasta_or_text(lines, note);
      note =
          "read as ravlin's text format: lines stand before the first '>' header (--informat fasta reads it as "
          "FASTA, skipping them)";
      return "text";
    }
    const std::string word = first_word(line);
    if (word == "PSEQ" && word.size() == trimmed_size(line)) return "molvane";
    if (word == "ENTRY") return "pir";
    preamble = true;
  }
  return {};
}

// The lines before a FASTA file's first '>' header that hold more than
// blanks: a title some files carry. Zero when there is no header at all.
std::size_t title_lines(const std::vector<std::string_view>& lines) {
  std::size_t first = 0;
  while (first < lines.size() && !lines[first].starts_with('>')) ++first;
  if (first == lines.size()) return 0;
  for (std::size_t k = 0; k < first; ++k)
    if (!blank_line(lines[k])) return first;
  return 0;
}

// An explicit --informat fasta skips a title above the first header, which
// the guess takes for ravlin's text format; skipped says how many lines.
bool read_fasta_skipping_title(std::string_view text, std::vector<TextEntry>& entries, TextFault& fault,
                               std::size_t& skipped) {
  const std::vector<std::string_view> lines = split_lines(text);
  skipped = title_lines(lines);
  const std::size_t offset = skipped == 0 ? 0 : static_cast<std::size_t>(lines[skipped].data() - text.data());
  const bool ok = read_fasta_text(text.substr(offset), entries, fault);
  const int shift = static_cast<int>(skipped);
  for (TextEntry& entry : entries) entry.line += shift;
  fault.line += shift;
  return ok;
}

bool parse_whole_text(const std::string& format, std::string_view text, std::vector<TextEntry>& entries,
                      std::string& error, const std::string& file, std::string& note) {
  TextFault fault;
  std::size_t skipped = 0;
  const bool ok = format == "fasta"       ? read_fasta_skipping_title(text, entries, fault, skipped)
                  : format == "stockholm" ? read_stockholm_text(text, entries, fault)
                  : format == "clustal"   ? read_clustal_text(text, entries, fault)
                                          : read_pir_text(text, entries, fault);
  if (!ok) error = file + " line " + std::to_string(fault.line) + ": " + fault.message;
  if (skipped > 0)
    note = "skipped " + (skipped == 1 ? std::string("line 1") : "lines 1 to " + std::to_string(skipped)) +
           ", before the first '>' header, as a title";
  return ok;
}

// ravlin's own formats through their entry readers, whose warnings go to
// standard error as they come.
int entry_format_code(const std::string& format) {
  if (format == "text") return kFormatText;
  if (format == "molvane") return kFormatMolvane;
  return kFormatPir;
}

// An entry read back from an aligned Molvane layout has blanks for gaps.
void drop_gap_columns(SeqRecord& record) {
  if (record.pRes.find(' ') == std::string::npos) return;
  std::string res, str, anc;
  for (std::size_t c = 0; c < record.pRes.size(); ++c) {
    if (record.pRes[c] == ' ') continue;
    res.push_back(record.pRes[c]);
    if (record.sRes && c < record.sRes->size()) str.push_back((*record.sRes)[c]);
    if (record.uRes && c < record.uRes->size()) anc.push_back((*record.uRes)[c]);
  }
  record.pRes = res;
  record.numRes = static_cast<std::int32_t>(res.size());
  if (record.sRes) record.sRes = str;
  if (record.uRes) record.uRes = anc;
}

std::string rejection_text(int result) {
  if (result == kReadTooMany) return "has more than 4,000 residues; ravlin aligns sequences of 3 to 4,000";
  if (result == kReadTooFew) return "has fewer than 3 residues; ravlin aligns sequences of 3 to 4,000";
  return "holds a character that is not an upper-case residue letter";
}

// The line of the last character before pos that is not white space: where
// an entry reader stood when it stopped.
int line_read_last(std::string_view text, long pos) {
  std::size_t end = pos < 0 ? 0 : std::min(static_cast<std::size_t>(pos), text.size());
  while (end > 0 && std::isspace(static_cast<unsigned char>(text[end - 1]))) --end;
  return 1 + static_cast<int>(std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(end), '\n'));
}

bool read_entry_format(const std::string& format, std::string& text, std::vector<SeqRecord>& records,
                       std::string& error, const std::string& file) {
  std::FILE* stream = fmemopen(text.data(), text.size(), "r");
  if (stream == nullptr) {
    error = "cannot read " + file;
    return false;
  }
  UniqueFile input(stream);
  std::vector<SeqRecord> table(static_cast<std::size_t>(kMaxSeqs) + 1);
  int count = 0, result = 0;
  const SeqReading how{entry_format_code(format), kMinRes, kMaxRes, stderr,
                       [&](const Failure& warning) { print_warning(warning, file); }};
  if (std::optional<Failure> failure = mread_seq(input.get(), table, count, kMaxSeqs + 1, how, result)) {
    error = failure_text(*failure, file + " line " + std::to_string(line_read_last(text, std::ftell(input.get()))));
    return false;
  }
  if (result == 0) {
    error = file + ": sequence " + std::to_string(count + 1) + " has the fault reported above; correct it";
    return false;
  }
  if (result < -1) {
    error = file + ": sequence " + std::to_string(count + 1) + " (" + table[count].acc.value_or("without an id") +
            ") " + rejection_text(result);
    return false;
  }
  table.resize(static_cast<std::size_t>(count));
  for (SeqRecord& record : table) drop_gap_columns(record);
  records = std::move(table);
  return true;
}

SeqRecord record_of(const TextEntry& entry) {
  SeqRecord record;
  record.acc = entry.id;
  record.title = entry.description;
  record.header = entry.header;
  record.pRes = entry.residues;
  record.numRes = static_cast<std::int32_t>(entry.residues.size());
  if (!entry.structure.empty()) {
    std::string states;
    for (const char raw : entry.structure) {
      const char state = map_structure_state(raw);
      states.push_back(state == 0 ? 'X' : state);
    }
    record.hasSRes = 1;
    record.sRes = states;
  }
  return record;
}

std::string seq_name(const SeqRecord& record, std::size_t k) {
  return record.acc ? *record.acc : "number " + std::to_string(k + 1);
}

bool check_records(const std::vector<SeqRecord>& records, const std::vector<int>& lines, const std::string& file,
                   bool designedLimits, std::string& error) {
  if (records.empty()) {
    error = file + " holds no sequences; give a file with at least one";
    return false;
  }
  if (designedLimits && records.size() > static_cast<std::size_t>(kMaxSeqs)) {
    error = file + " holds more than 500 sequences; ravlin aligns at most 500 at once";
    return false;
  }
  std::map<std::string, std::size_t> seen;
  for (std::size_t k = 0; k < records.size(); ++k) {
    const SeqRecord& record = records[k];
    const std::string at = lines.empty() ? file + ": " : file + " line " + std::to_string(lines[k]) + ": ";
    const int n = record.numRes;
    if (n == 0) {
      error = at + "sequence " + seq_name(record, k) + " has no residues; remove the entry or add its residues";
      return false;
    }
    if (n < kMinRes || (designedLimits && n > kMaxRes)) {
      error = at + "sequence " + seq_name(record, k) + " has " + std::to_string(n) +
              (designedLimits ? " residues; ravlin aligns sequences of 3 to 4,000 residues"
                              : " residues; ravlin aligns sequences of 3 residues or more");
      return false;
    }
    if (!record.acc) continue;
    const auto [it, fresh] = seen.emplace(*record.acc, k);
    if (!fresh) {
      error = at + "the id " + *record.acc + " is given to sequences " + std::to_string(it->second + 1) + " and " +
              std::to_string(k + 1) + "; give every sequence its own id";
      return false;
    }
  }
  return true;
}

// Nucleotide files read as proteins of a few letters; like the common
// aligners, ravlin tells them by their letters: at least 90% of all residues
// A, C, G, T, U or N (proteins hold about a quarter of those).
bool looks_like_nucleotides(const std::vector<SeqRecord>& records, const std::string& file, std::string& error) {
  long long nucleotides = 0, residues = 0;
  for (const SeqRecord& record : records)
    for (const char residue : std::string_view(record.pRes).substr(0, static_cast<std::size_t>(record.numRes))) {
      ++residues;
      nucleotides += std::string_view("ACGTUN").find(residue) != std::string_view::npos ? 1 : 0;
    }
  if (residues == 0 || nucleotides * 10 < residues * 9) return false;
  error = file + " looks like DNA/RNA: " + std::to_string(nucleotides * 100 / residues) +
          "% of its residues are A, C, G, T, U or N; ravlin aligns protein sequences (translate them first)";
  return true;
}

}  // namespace

bool read_input_seqs(const std::string& path, const std::string& format, bool designedLimits, InputSeqs& input,
                     std::string& error) {
  const std::string file = where(path);
  std::string text;
  if (!read_bytes(path, text, error)) return false;
  if (blank_line(text) && text.find('\n') == std::string::npos) {
    error = file + " is empty; give a file of sequences";
    return false;
  }
  input.format = format.empty() ? guess_format(text, input.note) : format;
  if (input.format.empty()) {
    error = "cannot tell the format of " + file +
            " (FASTA, Stockholm, Clustal, PIR, Molvane or ravlin's text format); give it with --informat";
    return false;
  }
  // PIR names two layouts: ENTRY records and ">P1;" entries.
  if (input.format == "pir") {
    for (const std::string_view line : split_lines(text)) {
      if (blank_line(line) || is_pir_annotation(line)) continue;
      if (is_pir_header(line)) input.format = "pir-fasta";
      break;
    }
  }

  std::vector<SeqRecord> records;
  std::vector<int> lines;
  std::vector<std::string> aligned;
  // ravlin's own entry formats are read by the designed readers, within their limits.
  bool limited = designedLimits;
  bool read = true;
  if (input.format == "fasta" || input.format == "stockholm" || input.format == "clustal" ||
      input.format == "pir-fasta") {
    std::vector<TextEntry> entries;
    read = parse_whole_text(input.format, text, entries, error, file, input.note);
    for (const TextEntry& entry : entries) {
      records.push_back(record_of(entry));
      lines.push_back(entry.line);
      aligned.push_back(entry.aligned);
    }
  } else {
    read = read_entry_format(input.format, text, records, error, file);
    limited = true;
  }
  read = read && check_records(records, lines, file, limited, error);
  // A guess that fails says how the file was read, and how else to read it.
  if (!read && !input.note.empty()) {
    if (error.ends_with('.')) error.pop_back();
    error += "; " + input.note;
  }
  if (!read || looks_like_nucleotides(records, file, error)) return false;

  for (std::size_t k = 0; k < records.size(); ++k) {
    SeqRecord& record = records[k];
    fill_missing_fields(record);
    input.ids.push_back(record.acc.value_or(""));
    input.residues.push_back(record.pRes);
    input.aligned.push_back(k < aligned.size() ? aligned[k] : record.pRes);
    input.structure.push_back(record.hasSRes == 1 ? *record.sRes : std::string());
    // The report and the Molvane layout show ids of at most 12 characters.
    if (record.acc && record.header) record.acc = short_id(*record.acc, static_cast<int>(k) + 1);
    input.records.push_back(std::move(record));
  }
  return true;
}

bool append_input_seqs(InputSeqs& input, InputSeqs&& more, const std::string& inputFile, const std::string& moreFile,
                       std::string& error) {
  const std::size_t before = input.ids.size();
  for (std::size_t k = 0; k < more.ids.size(); ++k) {
    if (std::find(input.ids.begin(), input.ids.begin() + static_cast<std::ptrdiff_t>(before), more.ids[k]) ==
        input.ids.begin() + static_cast<std::ptrdiff_t>(before))
      continue;
    error = "the id " + more.ids[k] + " is in both " + where(inputFile) + " and " + where(moreFile) +
            "; give every sequence its own id";
    return false;
  }
  for (std::size_t k = 0; k < more.ids.size(); ++k) {
    SeqRecord& record = more.records[k];
    // The short form counts sequences through both files.
    if (record.acc && record.header) record.acc = short_id(more.ids[k], static_cast<int>(before + k) + 1);
    input.records.push_back(std::move(record));
  }
  for (std::vector<std::string> InputSeqs::*field :
       {&InputSeqs::ids, &InputSeqs::residues, &InputSeqs::aligned, &InputSeqs::structure})
    std::move((more.*field).begin(), (more.*field).end(), std::back_inserter(input.*field));
  return true;
}

std::string short_id(const std::string& id, int n) {
  if (id.size() <= kIdShown) return id;
  return id.substr(0, kIdKept) + "~" + std::to_string(n);
}
