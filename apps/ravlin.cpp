// ravlin: interactive multiple alignment of protein sequences.
#include "run_setup.hpp"
#include "shell/errors.hpp"

int main(int argc, char** argv) {
  // Texts grow with their input; running out of memory for one still ends
  // the run with the out-of-memory frame rather than an abort.
  checked_alloc("main", [&] { ravlin_setup(argc, argv); });
}
