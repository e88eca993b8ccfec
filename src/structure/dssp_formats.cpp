// Structure readers for the output of mkdssp: the classic DSSP table and
// mmCIF. mmCIF from mkdssp carries either a per-residue summary table
// (_dssp_struct_summary) or, by default in mkdssp 4.2, the states as ranges
// (_struct_conf, _struct_sheet_range) over the chain's residues
// (_pdbx_poly_seq_scheme); both are read, the summary first. A residue has a
// state only when the atom table (_atom_site) gives its whole backbone, as
// DSSP requires: the residue table lists every residue of the chain.
//
// Sections: classic DSSP; mmCIF tokens; mmCIF tables; mmCIF chains.
#include <cctype>
#include <charconv>
#include <map>
#include <set>

#include "structure/structure_formats.hpp"

namespace {

bool starts_with(std::string_view text, std::string_view prefix) { return text.substr(0, prefix.size()) == prefix; }

std::string chain_list(const std::vector<std::string>& chains) {
  std::string list;
  for (const std::string& chain : chains) list += (list.empty() ? "" : " ") + chain;
  return list;
}

std::string no_chain_message(const StructSource& source, const std::vector<std::string>& chains) {
  return source.path + " has no chain " + source.chain + " (chains: " + chain_list(chains) +
         "); name one of them as ID=FILE:CHAIN";
}

// A residue number as the file writes it, insertion code and all.
std::string residue_number(std::string_view columns) {
  const std::size_t first = columns.find_first_not_of(' ');
  if (first == std::string_view::npos) return "";
  return std::string(columns.substr(first, columns.find_last_not_of(' ') - first + 1));
}

void note_chain(std::vector<std::string>& chains, const std::string& chain) {
  for (const std::string& known : chains)
    if (known == chain) return;
  chains.push_back(chain);
}

}  // namespace

// ---- classic DSSP ----

// Residue lines follow the "  #  RESIDUE" header: the file's residue number
// in columns 6-10 with its insertion code in 11, chain in column 12, the
// one-letter residue in column 14 ('!' marks a break, lower case a bridged
// cysteine), the state in column 17.
bool read_ss_dssp(const StructSource& source, std::string_view text, std::vector<StructEntry>& out,
                  std::string& error) {
  const std::vector<std::string_view> lines = split_lines(text);
  std::size_t k = 0;
  while (k < lines.size() && !starts_with(lines[k], "  #  RESIDUE")) ++k;
  std::string chosen = source.chain;
  std::vector<std::string> chains;
  StructEntry entry{source.id, "", "", ""};
  for (++k; k < lines.size(); ++k) {
    const std::string_view line = lines[k];
    if (line.find_first_not_of(' ') == std::string_view::npos) continue;
    const int lineNo = static_cast<int>(k) + 1;
    if (line.size() < 17) {
      error = file_line(source.path, lineNo) + "a residue line shorter than 17 columns; the DSSP file looks damaged";
      return false;
    }
    if (line[13] == '!') continue;
    const std::string chain(1, line[11]);
    note_chain(chains, chain);
    if (chosen.empty()) chosen = chain;
    if (chain != chosen) continue;
    const unsigned char residue = static_cast<unsigned char>(line[13]);
    if (!std::isalpha(residue) || map_structure_state(line[16]) == 0) {
      error = file_line(source.path, lineNo) + "no residue letter in column 14 or no DSSP state in column 17; " +
              "give mkdssp's classic output unchanged";
      return false;
    }
    entry.residues += std::islower(residue) ? 'C' : static_cast<char>(residue);
    entry.states += line[16];
    entry.numbers.push_back(residue_number(line.substr(5, 6)));
  }
  if (entry.residues.empty()) {
    error = source.chain.empty() ? source.path + ": the DSSP file lists no residues; check the mkdssp run"
                                 : no_chain_message(source, chains);
    return false;
  }
  entry.origin = source.path + " chain " + chosen;
  out.push_back(entry);
  return true;
}

// ---- mmCIF tokens ----

namespace {

struct CifToken {
  std::string_view text;
  bool quoted = false;
  int line = 0;
};

struct CifScanner {
  std::string_view text;
  std::size_t pos = 0;
  int line = 1;
};

bool is_space(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

void skip_space_and_comments(CifScanner& s) {
  while (s.pos < s.text.size()) {
    const char c = s.text[s.pos];
    if (c == '\n') ++s.line;
    if (is_space(c)) {
      ++s.pos;
    } else if (c == '#') {
      while (s.pos < s.text.size() && s.text[s.pos] != '\n') ++s.pos;
    } else {
      return;
    }
  }
}

// The next token: a bare word, a quoted string (closed by its quote before
// white space) or a text field between lines that start with ';'.
bool next_token(CifScanner& s, CifToken& token) {
  skip_space_and_comments(s);
  if (s.pos >= s.text.size()) return false;
  token = CifToken{{}, false, s.line};
  const char c = s.text[s.pos];
  const std::size_t start = s.pos;
  if (c == ';' && (start == 0 || s.text[start - 1] == '\n')) {
    std::size_t end = s.text.find("\n;", start);
    if (end == std::string_view::npos) end = s.text.size();
    token = CifToken{s.text.substr(start + 1, end - start - 1), true, s.line};
    for (std::size_t p = start; p < end && p < s.text.size(); ++p) s.line += s.text[p] == '\n';
    s.pos = end + 2 < s.text.size() ? end + 2 : s.text.size();
    return true;
  }
  if (c == '\'' || c == '"') {
    std::size_t end = start + 1;
    while (end < s.text.size() && !(s.text[end] == c && (end + 1 == s.text.size() || is_space(s.text[end + 1]))) &&
           s.text[end] != '\n')
      ++end;
    token = CifToken{s.text.substr(start + 1, end - start - 1), true, s.line};
    s.pos = end < s.text.size() && s.text[end] == c ? end + 1 : end;
    return true;
  }
  while (s.pos < s.text.size() && !is_space(s.text[s.pos])) ++s.pos;
  token.text = s.text.substr(start, s.pos - start);
  return true;
}

// ---- mmCIF tables ----

struct CifTable {
  std::vector<std::string> fields;
  std::vector<std::string_view> values;  // row after row
  int line = 0;
  std::size_t rows() const { return fields.empty() ? 0 : values.size() / fields.size(); }
  int column(std::string_view field) const {
    for (std::size_t k = 0; k < fields.size(); ++k)
      if (fields[k] == field) return static_cast<int>(k);
    return -1;
  }
  std::string_view at(std::size_t row, int col) const {
    return col < 0 ? std::string_view{} : values[row * fields.size() + static_cast<std::size_t>(col)];
  }
};

const char* const kWantedTables[] = {
    "_pdbx_poly_seq_scheme", "_struct_conf", "_struct_sheet_range", "_dssp_struct_summary",
    "_struct_conf_type",     "_software",    "_atom_site"};

bool is_wanted(std::string_view category) {
  for (const char* wanted : kWantedTables)
    if (category == wanted) return true;
  return false;
}

// Of the atoms, only what tells which residues have a backbone is kept: the
// table is most of the file.
bool keeps_field(std::string_view category, std::string_view field) {
  if (category != "_atom_site") return true;
  return field == "label_asym_id" || field == "label_seq_id" || field == "label_atom_id" ||
         field == "pdbx_PDB_model_num";
}

bool is_tag(const CifToken& t) { return !t.quoted && !t.text.empty() && t.text[0] == '_'; }

bool ends_values(const CifToken& t) {
  return is_tag(t) || (!t.quoted && (t.text == "loop_" || starts_with(t.text, "data_") ||
                                     starts_with(t.text, "save_") || t.text == "stop_" || t.text == "global_"));
}

std::string_view category_of(std::string_view tag) { return tag.substr(0, tag.find('.')); }
std::string field_of(std::string_view tag) {
  const std::size_t dot = tag.find('.');
  return std::string(dot == std::string_view::npos ? std::string_view{} : tag.substr(dot + 1));
}

// Collects the wanted tables of the first data block, from loops and from
// single items alike.
bool read_cif_tables(const std::string& path, std::string_view text, std::map<std::string, CifTable>& tables,
                     std::string& error) {
  CifScanner s{text};
  CifToken token;
  bool more = next_token(s, token), inBlock = false;
  while (more) {
    if (!token.quoted && starts_with(token.text, "data_")) {
      if (inBlock) break;
      inBlock = true;
      more = next_token(s, token);
    } else if (!token.quoted && token.text == "loop_") {
      const int loopLine = token.line;
      std::vector<std::string_view> tags;
      while ((more = next_token(s, token)) && is_tag(token)) tags.push_back(token.text);
      const std::string category(tags.empty() ? std::string_view{} : category_of(tags[0]));
      CifTable* table = is_wanted(category) ? &tables[category] : nullptr;
      std::vector<bool> kept;
      if (table != nullptr) {
        *table = CifTable{};
        table->line = loopLine;
        for (const std::string_view tag : tags) {
          kept.push_back(keeps_field(category, field_of(tag)));
          if (kept.back()) table->fields.push_back(field_of(tag));
        }
      }
      std::size_t count = 0;
      for (; more && !ends_values(token); more = next_token(s, token), ++count)
        if (table != nullptr && kept[count % kept.size()]) table->values.push_back(token.text);
      if (table != nullptr && count % kept.size() != 0) {
        error =
            file_line(path, loopLine) + "the " + category + " loop does not fill its last row; the file looks damaged";
        return false;
      }
    } else if (is_tag(token)) {
      const std::string_view tag = token.text;
      const int tagLine = token.line;
      if (!(more = next_token(s, token)) || ends_values(token)) {
        error = file_line(path, tagLine) + std::string(tag) + " has no value; the file looks damaged";
        return false;
      }
      if (is_wanted(category_of(tag)) && keeps_field(category_of(tag), field_of(tag))) {
        CifTable& table = tables[std::string(category_of(tag))];
        table.line = tagLine;
        table.fields.push_back(field_of(tag));
        table.values.push_back(token.text);
      }
      more = next_token(s, token);
    } else {
      more = next_token(s, token);
    }
  }
  return true;
}

// ---- mmCIF chains ----

struct CifResidue {
  std::string asym;  // label chain
  int seq = 0;       // label_seq_id
  char letter = 'X';
  char state = '-';
  std::string number;  // the file's own number (author numbering where given)
};

using ResidueKey = std::pair<std::string, int>;  // label chain and number

bool to_int(std::string_view text, int& value) {
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  return ec == std::errc{} && end == text.data() + text.size();
}

char conf_type_state(std::string_view type) {
  if (starts_with(type, "HELX_RH_3T")) return 'G';
  if (starts_with(type, "HELX_RH_PI")) return 'I';
  if (starts_with(type, "HELX_LH_PP")) return 'P';
  if (starts_with(type, "HELX")) return 'H';
  if (starts_with(type, "TURN")) return 'T';
  if (starts_with(type, "BEND")) return 'S';
  if (starts_with(type, "STRN")) return 'E';
  return 0;
}

bool equal_ignoring_case(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t k = 0; k < a.size(); ++k)
    if (std::tolower(static_cast<unsigned char>(a[k])) != std::tolower(static_cast<unsigned char>(b[k]))) return false;
  return true;
}

bool any_row_is(const std::map<std::string, CifTable>& tables, const char* category, const char* field,
                std::string_view value) {
  const auto table = tables.find(category);
  if (table == tables.end()) return false;
  const int col = table->second.column(field);
  for (std::size_t r = 0; col >= 0 && r < table->second.rows(); ++r)
    if (equal_ignoring_case(table->second.at(r, col), value)) return true;
  return false;
}

// mkdssp writes its summary, or names itself among the software and DSSP as
// the criteria of its range types; a deposited file has only its authors'
// helix and strand records.
bool states_from_dssp(const std::map<std::string, CifTable>& tables) {
  return tables.count("_dssp_struct_summary") > 0 || any_row_is(tables, "_software", "name", "dssp") ||
         any_row_is(tables, "_struct_conf_type", "criteria", "dssp");
}

// Residues with every backbone atom DSSP needs (N, CA, C, O) in the first
// model: DSSP gives no other residue a state, and classic DSSP leaves them
// out. False when the file has no usable atom table.
bool residues_with_backbone(const std::map<std::string, CifTable>& tables, std::set<ResidueKey>& whole) {
  const auto found = tables.find("_atom_site");
  if (found == tables.end()) return false;
  const CifTable& atoms = found->second;
  const int asymCol = atoms.column("label_asym_id"), seqCol = atoms.column("label_seq_id");
  const int atomCol = atoms.column("label_atom_id"), modelCol = atoms.column("pdbx_PDB_model_num");
  if (asymCol < 0 || seqCol < 0 || atomCol < 0 || atoms.rows() == 0) return false;
  static constexpr std::string_view kBackbone[] = {"N", "CA", "C", "O"};
  std::map<ResidueKey, unsigned> seen;
  for (std::size_t r = 0; r < atoms.rows(); ++r) {
    int seq = 0;
    if ((modelCol >= 0 && atoms.at(r, modelCol) != atoms.at(0, modelCol)) || !to_int(atoms.at(r, seqCol), seq))
      continue;
    for (unsigned k = 0; k < 4; ++k)
      if (atoms.at(r, atomCol) == kBackbone[k]) seen[{std::string(atoms.at(r, asymCol)), seq}] |= 1u << k;
  }
  for (const auto& [key, bits] : seen)
    if (bits == 15u) whole.insert(key);
  return true;
}

// The residue's number as the file's users know it: the author number and
// insertion code where the table gives them, else the label number.
std::string shown_number(const CifTable& table, std::size_t row, int numCol, int insCol, int seqCol) {
  if (numCol < 0) return std::string(table.at(row, seqCol));
  const std::string_view ins = table.at(row, insCol);
  return std::string(table.at(row, numCol)) + (ins == "." || ins == "?" ? "" : std::string(ins));
}

// The chosen chain's residues that have coordinates, from the residue table
// when the file has one, else from the summary. chainShown is the chain as a
// user names it.
bool select_chain(const StructSource& source, const std::map<std::string, CifTable>& tables,
                  std::vector<CifResidue>& residues, std::string& chainShown, std::string& error) {
  const auto scheme = tables.find("_pdbx_poly_seq_scheme");
  const bool fromScheme = scheme != tables.end();
  const CifTable& table = fromScheme ? scheme->second : tables.at("_dssp_struct_summary");
  const int asymCol = table.column(fromScheme ? "asym_id" : "label_asym_id");
  const int seqCol = table.column(fromScheme ? "seq_id" : "label_seq_id");
  const int monCol = table.column(fromScheme ? "mon_id" : "label_comp_id");
  const int authCol = table.column("pdb_strand_id"), seenCol = table.column("pdb_mon_id");
  const int numCol = table.column("pdb_seq_num"), insCol = table.column("pdb_ins_code");
  std::set<ResidueKey> withBackbone;
  const bool byAtoms = residues_with_backbone(tables, withBackbone);
  if (asymCol < 0 || seqCol < 0 || monCol < 0) {
    error = file_line(source.path, table.line) +
            "the residue table lacks chain, number or residue columns; give mkdssp's output unchanged";
    return false;
  }
  std::vector<std::string> chains;
  for (std::size_t r = 0; r < table.rows(); ++r) {
    const std::string asym(table.at(r, asymCol));
    const std::string auth(authCol < 0 ? asym : std::string(table.at(r, authCol)));
    note_chain(chains, auth);
    const char letter = residue_letter(table.at(r, monCol));
    // By default the first chain with an amino acid: nucleic acids come first in some files.
    if (chainShown.empty() && !source.chain.empty()) chainShown = source.chain;
    if (chainShown.empty() && letter != 'X') chainShown = auth;
    if (auth != chainShown && asym != chainShown) continue;
    CifResidue residue{asym, 0, letter, '-', shown_number(table, r, numCol, insCol, seqCol)};
    if (!to_int(table.at(r, seqCol), residue.seq)) {
      error = file_line(source.path, table.line) +
              "a residue number in the residue table is not a number; the file looks damaged";
      return false;
    }
    // A residue without coordinates is still listed in the residue table (a
    // deposited file marks it '?', mkdssp's reading of a PDB file does not).
    if (byAtoms ? withBackbone.count({asym, residue.seq}) == 0 : seenCol >= 0 && table.at(r, seenCol) == "?") continue;
    residues.push_back(residue);
  }
  if (residues.empty()) {
    error = source.chain.empty() ? source.path + ": the mmCIF file lists no amino acids with coordinates"
                                 : no_chain_message(source, chains);
    return false;
  }
  return true;
}

// States from the per-residue summary; residues it does not list carry no
// information and are left out.
void apply_summary(const CifTable& summary, std::vector<CifResidue>& residues) {
  const int asymCol = summary.column("label_asym_id"), seqCol = summary.column("label_seq_id");
  const int ssCol = summary.column("secondary_structure");
  std::map<std::pair<std::string, int>, char> states;
  for (std::size_t r = 0; r < summary.rows(); ++r) {
    int seq = 0;
    const std::string_view ss = summary.at(r, ssCol);
    if (to_int(summary.at(r, seqCol), seq) && ss.size() == 1)
      states[{std::string(summary.at(r, asymCol)), seq}] = ss[0] == '.' ? '-' : ss[0];
  }
  std::vector<CifResidue> kept;
  for (CifResidue residue : residues) {
    const auto found = states.find({residue.asym, residue.seq});
    if (found == states.end()) continue;
    residue.state = found->second;
    kept.push_back(residue);
  }
  residues.swap(kept);
}

// States from ranges of residues; a sheet range fills only residues that no
// other range claimed. True when the table gives strands.
bool apply_ranges(const CifTable& table, bool sheets, std::vector<CifResidue>& residues) {
  const int asymCol = table.column("beg_label_asym_id"), typeCol = table.column("conf_type_id");
  const int begCol = table.column("beg_label_seq_id"), endCol = table.column("end_label_seq_id");
  if (asymCol < 0 || begCol < 0 || endCol < 0 || (!sheets && typeCol < 0)) return false;
  bool strands = sheets;
  for (std::size_t r = 0; r < table.rows(); ++r) {
    const char state = sheets ? 'E' : conf_type_state(table.at(r, typeCol));
    strands = strands || state == 'E';
    int first = 0, last = 0;
    if (state == 0 || !to_int(table.at(r, begCol), first) || !to_int(table.at(r, endCol), last)) continue;
    for (CifResidue& residue : residues)
      if (residue.asym == table.at(r, asymCol) && residue.seq >= first && residue.seq <= last &&
          (!sheets || residue.state == '-'))
        residue.state = state;
  }
  return strands;
}

}  // namespace

bool read_ss_mmcif(const StructSource& source, std::string_view text, std::vector<StructEntry>& out,
                   std::string& error) {
  std::map<std::string, CifTable> tables;
  if (!read_cif_tables(source.path, text, tables, error)) return false;
  const auto summary = tables.find("_dssp_struct_summary");
  const bool hasRanges = tables.count("_struct_conf") + tables.count("_struct_sheet_range") > 0;
  if (summary == tables.end() && !(hasRanges && tables.count("_pdbx_poly_seq_scheme") > 0)) {
    error = source.path + ": no secondary structure in this mmCIF file; run mkdssp on it and give its output";
    return false;
  }
  std::vector<CifResidue> residues;
  std::string chain;
  if (!select_chain(source, tables, residues, chain, error)) return false;
  if (summary != tables.end()) {
    apply_summary(summary->second, residues);
  } else {
    // mkdssp gives each strand residue a STRN range; its sheet ranges span
    // whole ladders, bulges and all, and stand in only where no STRN range
    // is given (a deposited file's strands).
    bool strandRanges = false;
    if (tables.count("_struct_conf") > 0) strandRanges = apply_ranges(tables.at("_struct_conf"), false, residues);
    if (tables.count("_struct_sheet_range") > 0 && !strandRanges)
      apply_ranges(tables.at("_struct_sheet_range"), true, residues);
  }
  StructEntry entry{source.id, "", "", source.path + " chain " + chain};
  if (!states_from_dssp(tables))
    entry.note = source.path +
                 ": not written by mkdssp, so the states are the file's own helix and strand records, with no "
                 "turns or bends; for DSSP's states run mkdssp on it and give its output";
  for (const CifResidue& residue : residues) {
    if (map_structure_state(residue.state) == 0) {
      error = file_line(source.path, summary->second.line) + "'" + residue.state +
              "' in the summary is not a DSSP state; give mkdssp's output unchanged";
      return false;
    }
    entry.residues += residue.letter;
    entry.states += residue.state;
    entry.numbers.push_back(residue.number);
  }
  if (entry.residues.empty()) {
    error = source.path + ": chain " + chain + " has no residues with secondary structure; check the mkdssp run";
    return false;
  }
  out.push_back(entry);
  return true;
}
