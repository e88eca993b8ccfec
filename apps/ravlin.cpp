// ravlin: interactive multiple alignment of protein sequences.
#include <new>

#include "shell/errors.hpp"
#include "run_setup.hpp"

int main(int argc, char** argv) {
  // Texts grow with their input; running out of memory for one still ends
  // the run with the out-of-memory frame rather than an abort.
  try {
    ravlin_setup(argc, argv);
  } catch (const std::bad_alloc&) {
    out_of_memory("main");
  }
}
