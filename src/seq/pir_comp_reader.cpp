// Sections: read_seq_pir_comp at the end; before it, in the order a record is
// read: finding a record and its header, unpacking the residues, decoding the
// record text (escapes, number ranges, dictionary codes), splitting its fields.
#include "seq/pir_comp_reader.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "shell/errors.hpp"
#include "shell/text_input.hpp"

namespace {

constexpr int kHeaderLen = 5;
constexpr int kTextRead = 9998;         // bytes of one record text, its newline included
constexpr std::size_t kTextMax = 9999;  // characters a working text holds (buffers of 10,000)
constexpr unsigned char kEscape = 0xFE;
constexpr unsigned char kEscNewline = 0xBF;
constexpr char kRangeMark = ' ';
constexpr int kRangeBytes = 4;
constexpr unsigned char kSpacedFirst = 129;  // from here a byte is a space and the byte - 128
constexpr int kSpacedOffset = 128;
constexpr int kCodeMask = 31;
constexpr int kFirstDigitCode = 26;
constexpr int kDigitBase = 6;
constexpr char kFieldEnd = '~';
constexpr int kNoPrefix = 1;  // the prefix state at the start and after an expansion

struct PackedHeader {
  int count = 0;              // residues, signed 16-bit
  std::size_t packedLen = 0;  // bytes of packed residues
};

// Every record begins after a newline byte. Anything else is skipped a line
// at a time together with the white space behind it, so a file that does not
// begin with a newline loses its records.
int find_record_start(std::FILE* stream) {
  for (;;) {
    const int ch = std::fgetc(stream);
    if (ch == '\n') return 1;
    if (ch == EOF) return -1;
    std::ungetc(ch, stream);
    if (std::fscanf(stream, "%*[^\n]\n") == EOF) return -1;
  }
}

// A header cut short by the end of the file still counts; its missing bytes read as 0.
bool read_header(std::FILE* stream, PackedHeader& header) {
  unsigned char bytes[kHeaderLen] = {};
  if (std::fread(bytes, 1, kHeaderLen, stream) == 0) return false;
  header.count = static_cast<std::int16_t>(static_cast<std::uint16_t>((bytes[1] << 8) | bytes[2]));
  header.packedLen = static_cast<std::size_t>((bytes[3] << 8) | bytes[4]);
  return true;
}

// The 5-bit code starting at bit `bit` of packed[byte]; false when its bits run past the data.
bool take_code(const std::vector<unsigned char>& packed, std::size_t byte, int bit, int& code) {
  if (byte >= packed.size()) return false;
  code = (packed[byte] >> bit) & kCodeMask;
  if (bit > 8 - 5) {
    if (byte + 1 >= packed.size()) return false;
    code |= (packed[byte + 1] << (8 - bit)) & kCodeMask;
  }
  return true;
}

// Letters with base-6 repeat counts kept in 8 bits, so a count of 255 writes
// its letter zero times. Unpacking stops once `count` letters stand; a run
// past that count, or codes that run out first, reject the record.
std::optional<std::string> unpack_residues(const std::vector<unsigned char>& packed, int count) {
  std::string residues;
  residues.reserve(static_cast<std::size_t>(count));
  std::size_t byte = 0;
  int bit = 0;
  std::uint8_t repeat = 0;
  while (static_cast<int>(residues.size()) < count) {
    int code = 0;
    if (!take_code(packed, byte, bit, code)) return std::nullopt;
    bit += 5;
    if (bit >= 8) {
      bit -= 8;
      ++byte;
    }
    if (code >= kFirstDigitCode) {
      repeat = static_cast<std::uint8_t>(repeat * kDigitBase + (code - kFirstDigitCode));
      continue;
    }
    const int copies = static_cast<std::uint8_t>(repeat + 1);
    repeat = 0;
    if (static_cast<int>(residues.size()) + copies > count) return std::nullopt;
    residues.append(static_cast<std::size_t>(copies), static_cast<char>('A' + code));
  }
  return residues;
}

// The text ends at its first raw newline only: zero bytes are carried on,
// since a number range may hold them. 0xFE escapes a newline or itself and
// swallows any other byte, a zero byte included.
std::string decode_escapes(const std::string& raw) {
  std::string text;
  for (std::size_t i = 0; i < raw.size() && raw[i] != '\n'; ++i) {
    if (static_cast<unsigned char>(raw[i]) != kEscape) {
      text.push_back(raw[i]);
      continue;
    }
    if (i + 1 >= raw.size() || raw[i + 1] == '\n') break;
    const auto next = static_cast<unsigned char>(raw[++i]);
    if (next == kEscNewline) text.push_back('\n');
    if (next == kEscape) text.push_back(static_cast<char>(kEscape));
  }
  return text;
}

unsigned byte_at(const std::string& text, std::size_t pos) { return static_cast<unsigned char>(text[pos]); }

// A space and four bytes, whatever they hold, stand for two 16-bit numbers
// "first-second". A range cut off by the end of the text, or a result too
// long, rejects the record.
std::optional<std::string> expand_ranges(const std::string& text) {
  std::string out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != kRangeMark) {
      out.push_back(text[i]);
    } else {
      if (i + kRangeBytes >= text.size()) return std::nullopt;
      const unsigned first = byte_at(text, i + 1) * 256 + byte_at(text, i + 2);
      const unsigned second = byte_at(text, i + 3) * 256 + byte_at(text, i + 4);
      out += format_text("%u-%u", first, second);
      i += kRangeBytes;
    }
    if (out.size() > kTextMax) return std::nullopt;
  }
  return out;
}

bool is_prefix(int state) { return state == '@' || state == '!' || state == '$' || state == '#'; }

// The dictionary text a prefix and code byte refer to; null for an absent row.
const char* dictionary_text(int prefix, unsigned code) {
  if (code == 0) return nullptr;
  if (prefix == '@') return rep_words[code - 1];
  unsigned row = code - 1;
  if (prefix == '!') row = code + 255;
  if (prefix == '$') row = code + 511;
  return row < static_cast<unsigned>(kJournalSlots) ? journals[row] : nullptr;
}

// Dictionary references replace their prefix character; bytes from 129 up
// are a space and a character. A zero byte left over from the earlier passes
// ends the text here, as it ends any text; a prefix just before it stays as
// it is. An absent row or an overlong result rejects the record.
std::optional<std::string> expand_codes(const std::string& text) {
  std::string out;
  int state = kNoPrefix;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned b = byte_at(text, i);
    if (b == 0) break;
    if (is_prefix(state)) {
      const char* entry = dictionary_text(state, b);
      if (entry == nullptr) return std::nullopt;
      out.pop_back();
      out += entry;
      state = kNoPrefix;
    } else if (b >= kSpacedFirst && (i == 0 || text[i - 1] != ' ')) {
      out.push_back(' ');
      out.push_back(static_cast<char>(b - kSpacedOffset));
      state = static_cast<int>(b - kSpacedOffset);
    } else {
      out.push_back(static_cast<char>(b));
      state = static_cast<int>(b);
    }
    if (out.size() > kTextMax) return std::nullopt;
  }
  return out;
}

struct TextCursor {
  const std::string& text;
  std::size_t pos = 0;
};

// The run of characters up to the next '~'; the cursor moves past it and the '~'.
std::string read_field(TextCursor& cursor) {
  const std::size_t end = std::min(cursor.text.find(kFieldEnd, cursor.pos), cursor.text.size());
  std::string field = cursor.text.substr(cursor.pos, end - cursor.pos);
  cursor.pos = std::min(end + 1, cursor.text.size());
  return field;
}

unsigned read_count_byte(TextCursor& cursor) {
  if (cursor.pos >= cursor.text.size()) return 0;
  return byte_at(cursor.text, cursor.pos++);
}

// The reference items and the trailing number are parsed only to walk the
// record's layout; nothing of them is kept.
void skip_references(TextCursor& cursor) {
  const unsigned items = read_count_byte(cursor);
  for (unsigned item = 1; item < items; ++item) {
    read_field(cursor);  // the item's residue range
    read_field(cursor);
  }
  char* end = nullptr;
  std::strtol(cursor.text.c_str() + cursor.pos, &end, 0);
  cursor.pos = static_cast<std::size_t>(end - cursor.text.c_str());
}

struct RecordTexts {
  std::string title;
  std::string acc;
};

// Decodes the record text and splits off the title and accession code.
std::optional<RecordTexts> decode_record_text(const std::string& raw) {
  const std::optional<std::string> ranged = expand_ranges(decode_escapes(raw));
  if (!ranged) return std::nullopt;
  const std::optional<std::string> decoded = expand_codes(*ranged);
  if (!decoded) return std::nullopt;

  TextCursor cursor{*decoded};
  RecordTexts texts;
  texts.title = read_field(cursor);
  // An empty first field leaves the title buffer as the range pass left it,
  // read as text, so up to a zero byte it may still hold.
  if (texts.title.empty()) texts.title = ranged->substr(0, ranged->find('\0'));
  texts.acc = read_field(cursor);
  read_field(cursor);
  read_field(cursor);
  skip_references(cursor);
  return texts;
}

}  // namespace

int read_seq_pir_comp(std::FILE* stream, SeqRecord& seq) {
  const int start = find_record_start(stream);
  if (start != 1) return start;

  PackedHeader header;
  if (!read_header(stream, header)) return 0;
  if (header.packedLen == 0) return 0;
  std::vector<unsigned char> packed =
      checked_vector<unsigned char>(header.packedLen, "read_seq_pir_comp: packed residues");
  if (std::fread(packed.data(), 1, packed.size(), stream) != packed.size()) return 0;

  // The text is read in full before any check, so that a rejected record
  // still leaves the stream at the next one.
  std::string raw;
  read_line(stream, raw, kTextRead);
  std::ungetc('\n', stream);

  if (header.count < 0) return 0;
  std::optional<std::string> residues = unpack_residues(packed, header.count);
  if (!residues) return 0;
  std::optional<RecordTexts> texts = decode_record_text(raw);
  if (!texts) return 0;

  seq.title = std::move(texts->title);
  seq.acc = std::move(texts->acc);
  seq.pRes = std::move(*residues);
  seq.numRes = header.count;
  seq.sRes.reset();
  seq.uRes.reset();
  seq.organism.reset();
  seq.reference.reset();
  return 1;
}
