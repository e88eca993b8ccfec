// Writes a compressed PIR file of generated records: short related protein
// sequences (10 to 20 residues, some with runs) under titles that use the
// dictionaries, number ranges and escapes, so that runs can read real files.
//
// usage: pir_comp_write COUNT FILE
#include <cstdio>
#include <cstdlib>
#include <string>

#include "../seq/pir_comp_encoder.hpp"

namespace {

using pir_comp_encoder::Record;

// A small fixed generator, so that every run writes the same file.
unsigned next_random(unsigned& state) {
  state = state * 1103515245u + 12345u;
  return (state >> 16) & 0x7FFF;
}

const char* const kFamilies[] = {"cytochrome-c oxidase", "alpha-amylase", "glutathione transferase",
                                 "ferredoxin",           "histone H4",    "protein kinase"};
const char* const kSpecies[] = {"Homo sapiens (human)", "Bacillus subtilis", "Saccharomyces cerevisiae (yeast)",
                                "Mus musculus (house mouse)", "Escherichia coli"};
const std::string kMotif = "MKVLAAGIWHDERPTSQNFYC";

std::string generated_residues(unsigned& state) {
  const std::size_t length = 10 + next_random(state) % 11;
  std::string residues = kMotif.substr(0, length);
  for (char& residue : residues) {
    if (next_random(state) % 4 == 0) residue = static_cast<char>('A' + next_random(state) % 26);
  }
  if (next_random(state) % 3 == 0) residues.replace(2, 4, 4, residues[2]);
  return residues;
}

Record generated_record(int index, unsigned& state) {
  Record record;
  record.residues = generated_residues(state);
  const std::string species = kSpecies[next_random(state) % 5];
  record.title = std::string(kFamilies[next_random(state) % 6]) + " " + std::to_string(index + 1) + " - " + species;
  record.acc = "PC" + std::to_string(1000 + index);
  record.field3 = "source\n" + species;
  record.field4 = "J. Biol. Chem. (1991) 266:" + std::to_string(1000 + index) + "-" + std::to_string(1100 + index);
  record.items = {{"A", "complete sequence"}, {"1-" + std::to_string(record.residues.size()), "fragment"}};
  record.trailing = index;
  return record;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: pir_comp_write COUNT FILE\n");
    return 2;
  }
  const int count = std::atoi(argv[1]);
  std::FILE* out = std::fopen(argv[2], "wb");
  if (out == nullptr) {
    std::fprintf(stderr, "pir_comp_write: cannot write %s\n", argv[2]);
    return 1;
  }
  unsigned state = 1;
  for (int index = 0; index < count; ++index) {
    const std::string bytes = pir_comp_encoder::encode_record(generated_record(index, state));
    std::fwrite(bytes.data(), 1, bytes.size(), out);
  }
  std::fputc('\n', out);
  return std::fclose(out) == 0 ? 0 : 1;
}
