// ravlin: interactive multiple alignment of protein sequences.
#include "shell/run_setup.hpp"

int main(int argc, char** argv) { ravlin_setup(argc, argv); }
