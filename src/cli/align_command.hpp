// ravlin-align: a command line in the style of the common aligners over the
// same engine and records as ravlin and ravlin-batch.
#pragma once

// The whole program: returns its exit status (0 done, 1 input or run error,
// 2 usage error).
int run_align_command(int argc, char** argv);
