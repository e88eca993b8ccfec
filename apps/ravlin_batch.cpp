// ravlin-batch: runs one alignment job from a complete parameter file, with
// no menus, for scripts and pipelines.
#include <cstdio>

#include "malign/run_driver.hpp"

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: ravlin-batch PARMS REPORT\n");
    return 2;
  }
  return ravlin_main(argv[1], argv[2]);
}
