// Structure sources: the argument's form, recognising a file's format from
// its content, and the helpers every reader shares.
//
// Sections: format recognition (private); public routines; shared helpers.
#include "structure/structure_source.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
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

// The parts after the file in FILE:A or FILE:A:B, with path set to the file;
// none when no such file exists (the path is then left as it was given).
std::vector<std::string> parts_after_file(const std::string& rest, std::string& path) {
  std::size_t colon = rest.size();
  std::vector<std::string> parts;
  for (int k = 0; k < 2 && colon > 0; ++k) {
    colon = rest.rfind(':', colon - 1);
    if (colon == std::string::npos) break;
    parts.insert(parts.begin(),
                 rest.substr(colon + 1, (parts.empty() ? rest.size() : rest.find(':', colon + 1)) - colon - 1));
    if (is_file(rest.substr(0, colon))) {
      path = rest.substr(0, colon);
      return parts;
    }
  }
  return {};
}

// A whole number, with a minus sign for the numbers some files use before a
// chain's first residue.
bool parse_number(std::string_view text, int& value) {
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  return !text.empty() && ec == std::errc{} && end == text.data() + text.size();
}

// FROM-TO as residue numbers. False when part is no range; error is set
// only when it is one but reversed.
bool parse_range(const std::string& part, StructSource& source, const std::string& text, std::string& error) {
  const std::size_t dash = part.find('-', 1);
  if (dash == std::string::npos || !parse_number(std::string_view(part).substr(0, dash), source.from) ||
      !parse_number(std::string_view(part).substr(dash + 1), source.to))
    return false;
  if (source.from > source.to) {
    error = "structure source '" + text + "': the residue range " + part + " runs backwards; give FROM-TO with " +
            "FROM not above TO";
    return false;
  }
  source.hasRange = true;
  return true;
}

// Keeps the residues numbered from source.from to source.to (by the number
// before any insertion code).
bool keep_range(const StructSource& source, StructEntry& entry, std::string& error) {
  StructEntry kept = entry;
  kept.residues.clear(), kept.states.clear(), kept.numbers.clear();
  for (std::size_t k = 0; k < entry.numbers.size() && k < entry.residues.size(); ++k) {
    const std::string& number = entry.numbers[k];
    int value = 0;
    const std::size_t digits = number.find_first_not_of("-0123456789");
    if (!parse_number(std::string_view(number).substr(0, digits), value) || value < source.from || value > source.to)
      continue;
    kept.residues += entry.residues[k], kept.states += entry.states[k], kept.numbers.push_back(number);
  }
  const std::string range = std::to_string(source.from) + "-" + std::to_string(source.to);
  if (kept.residues.empty()) {
    const std::string span = entry.numbers.empty() ? ""
                                                   : " (its residues run from " + entry.numbers.front() + " to " +
                                                         entry.numbers.back() + ")";
    error = entry.origin + " has no residues with secondary structure numbered " + range + span +
            "; give a range of the file's residue numbers";
    return false;
  }
  kept.origin += " residues " + range;
  entry = kept;
  return true;
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
  const std::vector<std::string> parts = parts_after_file(rest, source.path);
  if (std::find(parts.begin(), parts.end(), std::string()) != parts.end()) {
    error = "structure source '" + text + "': give the chain or residue range after ':' or leave out the ':'";
    return false;
  }
  std::string fault;
  if (parts.size() == 1 && !parse_range(parts[0], source, text, fault)) source.chain = parts[0];
  if (parts.size() == 2) {
    source.chain = parts[0];
    if (!parse_range(parts[1], source, text, fault) && fault.empty())
      fault = "structure source '" + text + "': give the residue range after the chain as FROM-TO, e.g. " +
              source.chain + ":20-80";
  }
  if (!fault.empty()) error = fault;
  return fault.empty();
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
  if (source.hasRange && format != Format::Dssp && format != Format::Mmcif) {
    error = source.path +
            ": a residue range can be chosen only in DSSP and mmCIF files; leave out ':" + std::to_string(source.from) +
            "-" + std::to_string(source.to) + "'";
    return false;
  }
  if (source.id.empty() && !ownsIds) source.id = id_from_path(source.path);
  switch (format) {
    case Format::Fasta:
      return read_ss_fasta(source, content, out, error);
    case Format::Stockholm:
      return read_ss_stockholm(source, content, out, error);
    case Format::Dssp:
      return read_ss_dssp(source, content, out, error) && (!source.hasRange || keep_range(source, out.back(), error));
    case Format::Mmcif:
      return read_ss_mmcif(source, content, out, error) && (!source.hasRange || keep_range(source, out.back(), error));
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
