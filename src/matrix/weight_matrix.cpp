#include "matrix/weight_matrix.hpp"

#include "shell/errors.hpp"

ScoreTable wtMatrix{};
ScoreTable ssMatrix{};
std::string wtMatFname;

int read_matrix_file(std::FILE* stream, ScoreTable& matrix) {
  fatal_err("read_matrix_file", "not built yet");
}
