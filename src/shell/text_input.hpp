// Low-level reading of text streams, shared by the parameter reader and the
// sequence readers: whitespace-delimited words and bounded line reads.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct FileCloser {
  void operator()(std::FILE* stream) const {
    if (stream != nullptr) std::fclose(stream);
  }
};
using UniqueFile = std::unique_ptr<std::FILE, FileCloser>;

// Opens path with mode; an empty handle when it can't be opened.
UniqueFile open_file(const std::string& path, const char* mode);

// Reads one whitespace-delimited word, as a "%s" scan does: leading white
// space is skipped, the white space that ends the word is left unread.
// Returns false at end of input before any word character.
bool read_word(std::FILE* stream, std::string& word);

// Reads a decimal integer as a "%d" scan does (leading white space, an
// optional sign, digits); a number too large for an int is held at the
// nearest limit. False when no digit comes.
bool scan_int(std::FILE* stream, int& value);
// The same conversion of text from pos on; pos moves past what was read.
bool scan_int(std::string_view text, std::size_t& pos, int& value);

// Reads as an fgets into a buffer of maxChars + 1 bytes does: up to maxChars
// characters, stopping after a newline (which is kept). Returns false at end
// of input before any character.
bool read_line(std::FILE* stream, std::string& line, int maxChars);

// text as a C string sees it: nothing behind its first zero byte.
std::string as_c_text(std::string text);

// read_line, then the line as a C string sees it: a zero byte ends it, while
// the characters behind it still count against the read's length.
bool read_text_line(std::FILE* stream, std::string& line, int maxChars);

// Reads words until one is exactly keyword; every other word costs the rest of
// its line (a bounded skip of kLineRead characters). False when the input ends first.
bool find_keyword(std::FILE* stream, const char* keyword);

// Discards the rest of the current line, up to maxChars characters or through
// the next newline, whichever comes first.
void skip_line(std::FILE* stream, int maxChars);

// A file's text split into lines without their line ends (a final carriage
// return is dropped too, so Windows files read as any other); line k of the
// file is lines[k - 1].
std::vector<std::string_view> split_lines(std::string_view text);

// Reads a whole file, its line ends made newlines (see with_newlines);
// false with a message naming it when it can't.
bool read_text_file(const std::string& path, std::string& text, std::string& error);

// text with every line end a newline: Windows' CR LF and the old Mac's lone
// CR alike.
std::string with_newlines(std::string text);

// Writes text followed by the prompt marker "\n>> " that every terminal
// question ends with.
void show_prompt(std::FILE* stream, const char* text);
