// Structure sources: the argument's form, recognising a file's format from
// its content, and the helpers every reader shares.
//
// Sections: format recognition (private); public routines; shared helpers.
#include "structure/structure_source.hpp"

#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "structure/structure_formats.hpp"

namespace {

enum class Format { Unknown, Fasta, Stockholm, Dssp, Mmcif, Psipred };

bool is_file(const std::string& path) {
  std::error_code ec;
  return !path.empty() && std::filesystem::is_regular_file(path, ec);
}

bool starts_with(std::string_view line, std::string_view prefix) { return line.substr(0, prefix.size()) == prefix; }

bool is_blank_line(std::string_view line) { return line.find_first_not_of(" \t") == std::string_view::npos; }

Format recognise_format(std::string_view text) {
  const std::vector<std::string_view> lines = split_lines(text);
  for (const std::string_view line : lines)
    if (starts_with(line, "  #  RESIDUE")) return Format::Dssp;
  for (const std::string_view line : lines) {
    if (is_blank_line(line)) continue;
    if (starts_with(line, "# STOCKHOLM")) return Format::Stockholm;
    if (starts_with(line, "# PSIPRED") || starts_with(line, "Conf:")) return Format::Psipred;
    if (line[0] == '#') continue;  // mmCIF files may open with comments
    if (starts_with(line, "data_")) return Format::Mmcif;
    if (line[0] == '>') return Format::Fasta;
    return Format::Unknown;
  }
  return Format::Unknown;
}

}  // namespace

// ---- public routines ----

bool parse_structure_source(const std::string& text, StructSource& source, std::string& error) {
  source = StructSource{};
  if (text.empty()) {
    error = "empty structure source: give FILE, ID=FILE or ID=FILE:CHAIN";
    return false;
  }
  if (is_file(text)) {
    source.path = text;
    return true;
  }
  std::string rest = text;
  const std::size_t eq = text.find('=');
  if (eq != std::string::npos) {
    source.id = text.substr(0, eq);
    rest = text.substr(eq + 1);
    if (source.id.empty() || source.id.find_first_of(" \t") != std::string::npos) {
      error = "structure source '" + text + "': give the sequence id (one word) before '='";
      return false;
    }
  }
  source.path = rest;
  const std::size_t colon = rest.rfind(':');
  if (!is_file(rest) && colon != std::string::npos && is_file(rest.substr(0, colon))) {
    source.path = rest.substr(0, colon);
    source.chain = rest.substr(colon + 1);
    if (source.chain.empty()) {
      error = "structure source '" + text + "': give the chain after ':' or leave out the ':'";
      return false;
    }
  }
  return true;
}

bool read_structure_source(const std::string& text, std::vector<StructEntry>& out, std::string& error) {
  StructSource source;
  std::string content;
  if (!parse_structure_source(text, source, error) || !read_text_file(source.path, content, error)) return false;
  const Format format = recognise_format(content);
  const bool ownsIds = format == Format::Fasta || format == Format::Stockholm;
  if (ownsIds && !source.id.empty()) {
    error = source.path + ": this file names its own sequences; give it without '" + source.id + "='";
    return false;
  }
  if (!source.chain.empty() && format != Format::Dssp && format != Format::Mmcif) {
    error = source.path + ": a chain can be chosen only in DSSP and mmCIF files; leave out ':" + source.chain + "'";
    return false;
  }
  if (source.id.empty() && !ownsIds) source.id = id_from_path(source.path);
  switch (format) {
    case Format::Fasta:
      return read_ss_fasta(source, content, out, error);
    case Format::Stockholm:
      return read_ss_stockholm(source, content, out, error);
    case Format::Dssp:
      return read_ss_dssp(source, content, out, error);
    case Format::Mmcif:
      return read_ss_mmcif(source, content, out, error);
    case Format::Psipred:
      return read_ss_psipred(source, content, out, error);
    case Format::Unknown:
      break;
  }
  error = source.path +
          ": not a structure file ravlin knows; give FASTA-style states ('>' headers), DSSP or mmCIF "
          "output of mkdssp, a PSIPRED .ss2 or .horiz file, or Stockholm with #=GR SS lines";
  return false;
}

char map_structure_state(char raw) {
  struct Group {
    std::string_view letters;
    char state;
  };
  static constexpr Group kGroups[] = {{"HGI", 'H'}, {"EB", 'B'}, {"TS", 'T'}, {"PC- ", 'C'}, {"X", 'X'}};
  const char upper = static_cast<char>(std::toupper(static_cast<unsigned char>(raw)));
  for (const Group& group : kGroups)
    if (group.letters.find(upper) != std::string_view::npos) return group.state;
  return 0;
}

// ---- shared helpers ----

std::string id_from_path(const std::string& path) {
  const std::string name = std::filesystem::path(path).filename().string();
  return name.substr(0, name.find('.'));
}

std::string file_line(const std::string& path, int line) { return path + " line " + std::to_string(line) + ": "; }

char residue_letter(std::string_view name) {
  static const char* const kNames[] = {"ALA", "ARG", "ASN", "ASP", "CYS", "GLN", "GLU", "GLY",
                                       "HIS", "ILE", "LEU", "LYS", "MET", "PHE", "PRO", "SER",
                                       "THR", "TRP", "TYR", "VAL", "MSE", "SEC", "PYL"};
  static const char kLetters[] = "ARNDCQEGHILKMFPSTWYVMUO";
  for (std::size_t k = 0; k < sizeof kNames / sizeof kNames[0]; ++k)
    if (name == kNames[k]) return kLetters[k];
  return 'X';
}
