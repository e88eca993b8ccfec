// The interactive front: banner, options, menus, the temporary parameter file
// and the call of the run driver.
#pragma once

#include <cstdio>
#include <string>

#include "shell/text_input.hpp"

extern std::string parmsFname;
extern std::string resultsFname;
extern std::string dataFname;

// The whole of main: never returns.
[[noreturn]] void ravlin_setup(int argc, char** argv);

UniqueFile check_parms_file(std::string& path);
int get_ravlin_format();
UniqueFile open_data_file(std::string& path, const char* label);
int read_seq_select(std::FILE* stream, int dataFormat);
void get_output_file(std::string& path);
int read_menu_num(std::FILE* stream, int min, int max, int errLevel);
