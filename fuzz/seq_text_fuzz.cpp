// The whole-text sequence parsers (FASTA, the ">P1;" PIR layout, Stockholm, Clustal),
// each given every input whatever it looks like. What they return must keep
// their promises: a fault names a line of the text, an entry has residues
// in upper case only and structure (when given) one state per residue.
#include <cctype>
#include <cstdlib>

#include "fuzz/fuzz_support.hpp"
#include "seq/text_formats.hpp"
#include "shell/text_input.hpp"

namespace {

using Parser = bool (*)(std::string_view, std::vector<TextEntry>&, TextFault&);

void check(bool ok, const std::vector<TextEntry>& entries, const TextFault& fault, std::size_t lines) {
  if (!ok) {
    if (fault.line < 0 || static_cast<std::size_t>(fault.line) > lines + 1 || fault.message.empty()) std::abort();
    return;
  }
  for (const TextEntry& entry : entries) {
    for (const char c : entry.residues)
      if (std::islower(static_cast<unsigned char>(c))) std::abort();
    if (!entry.structure.empty() && entry.structure.size() != entry.residues.size()) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = fuzz::text_of(data, size);
  const std::size_t lines = split_lines(text).size();
  for (const Parser parse : {read_fasta_text, read_pir_text, read_stockholm_text, read_clustal_text}) {
    std::vector<TextEntry> entries;
    TextFault fault;
    const bool ok = parse(text, entries, fault);
    check(ok, entries, fault, lines);
  }
  return 0;
}
