#include "seq/keyboard_reader.hpp"

#include <string>

#include "shell/errors.hpp"
#include "shell/text_input.hpp"

namespace {

constexpr const char* kModule = "read_seq_kbd";
constexpr const char* kPrompt = "\n>> ";
// Width of the prompt without its line end: the ruler's column 1 then stands
// above the first residue typed.
constexpr int kPromptIndent = 3;
// Room for the title word, leaving space for its line end and a terminator.
constexpr std::size_t kMaxTitleWord = 254;

void write_indent(std::FILE* output, int indent) {
  for (int i = 0; i < indent; ++i) std::fputc(' ', output);
}

void show_ruler_prompt(std::FILE* output) {
  print_ruler(output, kPromptIndent);
  std::fputs(kPrompt, output);
  std::fflush(output);
}

// One word, cut to the room a title has; the cut part is dropped with the
// word rather than left behind to be read as residues.
std::string read_title_word(std::FILE* input) {
  std::string word;
  read_word(input, word);
  if (word.size() > kMaxTitleWord) word.resize(kMaxTitleWord);
  return word;
}

}  // namespace

void print_ruler(std::FILE* output, int indent) {
  std::fputc('\n', output);
  write_indent(output, indent);
  std::fputs("         1         2         3         4         5\n", output);
  write_indent(output, indent);
  std::fputs("12345678901234567890123456789012345678901234567890\n", output);
  write_indent(output, indent);
  std::fputs("         |         |         |         |         |", output);
}

int read_seq_kbd(std::FILE* input, std::FILE* output, SeqRecord& seq, int minRes, int maxRes,
                 const WarningSink& warnings) {
  std::fputs("\n Enter title for the sequence. Use underscores instead ", output);
  std::fputs("\n of blanks to separate words (eg. thioredoxin_human).\n", output);
  std::fputs(kPrompt, output);
  std::fflush(output);  // the title is typed behind this prompt

  // A word never holds its line end; the stored title always does.
  const std::string title = read_title_word(input) + "\n";
  seq.title = title;
  seq.acc = std::string("000000");

  std::fputs("\n Enter each amino acid (one letter code). ", output);
  std::fputs("\n You may enter up to 50 amino acids on one line. ", output);
  std::fputs("\n Press <return> to get a new prompt line.", output);
  std::fputs("\n When you are done enter $ and press <return>.\n", output);
  show_ruler_prompt(output);

  std::fgetc(input);  // the line end that closed the title

  std::string residues;
  for (;;) {
    const int ch = std::fgetc(input);
    if (ch == '\n') {
      show_ruler_prompt(output);
    } else if (ch == '$') {
      break;
    } else if (ch < 'A' || ch > 'Z') {
      // End of input lands here too, shown as the byte it converts to.
      warn(warnings, kModule, "Illegal amino acid '%c' in %s\n", ch, title.c_str());
      return 0;
    } else if (static_cast<int>(residues.size()) >= maxRes) {
      warn(warnings, kModule, "Too many amino acids (Max = %d) in %s\n", maxRes, title.c_str());
      return 0;
    } else {
      residues.push_back(static_cast<char>(ch));
    }
  }

  // Only capitals get this far, so the residues need no folding.
  seq.pRes = residues;
  seq.numRes = static_cast<int>(residues.size());
  if (seq.numRes < minRes) {
    warn(warnings, kModule, "Too few amino acids (Min = %d) in %s\n", minRes, title.c_str());
    return 0;
  }
  return 1;
}
