// ravlin-align: aligns a sequence file from the command line, FASTA in and
// standard alignment formats out, for pipelines and the habits of users of
// the common aligners.
#include "cli/align_command.hpp"
#include "shell/errors.hpp"

int main(int argc, char** argv) {
  return checked_alloc("main", [&] { return run_align_command(argc, argv); });
}
