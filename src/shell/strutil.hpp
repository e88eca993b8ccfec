// Small routines over byte strings shared by the sequence readers and the
// alignment engine. Blank (' ') is the gap character throughout. Only
// fit_text allocates; lengths are explicit where a text may hold no terminator.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

void to_upper(const char* src, char* dst);
int remove_blanks(const char* src, int len, char* dst);
int count_chars_in_string(const char* text, int len, char ch);
// Lays the gap-free inStr into the gap pattern of an aligned text: out gets a
// blank where pattern has blankCh and the next inStr character elsewhere.
void str_match_blanks(const char* inStr, int inLen, const char* pattern, int patLen, char blankCh, char* out);
void str_scan(char* text, int len, char from, char to);

// text cut or filled with filler to exactly n characters (none for n < 1).
// Out of memory ends the run naming module.
std::string fit_text(std::string_view text, int n, char filler, const char* module);
