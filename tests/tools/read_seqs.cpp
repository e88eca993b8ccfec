// Reads a sequence file into the run's table as a run does (at most 500
// sequences of 3 to 4000 residues), so that tests can see how bad files end it.
//
// usage: read_seqs FORMAT FILE
#include <cstdio>
#include <cstdlib>

#include "seq/seq_record.hpp"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: read_seqs FORMAT FILE\n");
    return 2;
  }
  mget_seqs(argv[2], stdout, mySeq, std::atoi(argv[1]), kMaxSeqs, kMinRes, kMaxRes, multAlignNum);
  return 0;
}
