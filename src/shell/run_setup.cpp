#include "shell/run_setup.hpp"

#include "shell/errors.hpp"

std::string parmsFname;
std::string resultsFname;
std::string dataFname;

void ravlin_setup(int argc, char** argv) {
  fatal_err("ravlin_setup", "not built yet");
}

UniqueFile check_parms_file(std::string& path) {
  fatal_err("check_parms_file", "not built yet");
}

int get_ravlin_format() {
  fatal_err("get_ravlin_format", "not built yet");
}

UniqueFile open_data_file(std::string& path, const char* label) {
  fatal_err("open_data_file", "not built yet");
}

int read_seq_select(std::FILE* stream, int dataFormat) {
  fatal_err("read_seq_select", "not built yet");
}

void get_output_file(std::string& path) {
  fatal_err("get_output_file", "not built yet");
}

int read_menu_num(std::FILE* stream, int min, int max, int errLevel) {
  fatal_err("read_menu_num", "not built yet");
}
