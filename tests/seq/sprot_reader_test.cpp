#include "seq/sprot_reader.hpp"

#include <cstdio>
#include <string>

#include "support/test_support.hpp"

using testsupport::error_frame;

namespace {

std::FILE* stream_over(const std::string& text) {
  std::FILE* stream = std::tmpfile();
  std::fputs(text.c_str(), stream);
  std::rewind(stream);
  return stream;
}

const std::string kCytochrome =
    "ID   CYC_HUMAN      STANDARD;      PRT;   105 AA.\n"
    "AC   P99999;\n"
    "DE   CYTOCHROME C.\n"
    "DE   A SECOND DESCRIPTION LINE.\n"
    "OS   HOMO SAPIENS (HUMAN).\n"
    "SQ   SEQUENCE   105 AA;  11618 MW;\n"
    "     MGDVEKGKKI FIMKCSQCHT VEKGGKHKTG PNLHGLFGRK TGQAPGYSYT AANKNKGIIW\n"
    "     GEDTLMEYLE NPKKYIPGTK MIFVGIKKKE ERADLIAYLK KATNE\n"
    "//\n";

const std::string kCytochromeResidues =
    "MGDVEKGKKIFIMKCSQCHTVEKGGKHKTGPNLHGLFGRKTGQAPGYSYTAANKNKGIIW"
    "GEDTLMEYLENPKKYIPGTKMIFVGIKKKEERADLIAYLKKATNE";

// A minimal entry around the given sequence lines.
std::string entry(const std::string& sequenceLines) {
  return "ID   TEST_1\nDE   test entry\nSQ   SEQUENCE\n" + sequenceLines + "//\n";
}

struct SprotParse {
  int result = 0;
  SeqRecord seq;
  std::string printed;
};

SprotParse parse(const std::string& text) {
  std::FILE* in = stream_over(text);
  SprotParse out;
  testing::internal::CaptureStdout();
  out.result = parse_seq_sprot(in, out.seq);
  out.printed = testing::internal::GetCapturedStdout();
  std::fclose(in);
  return out;
}

}  // namespace

TEST(ReadSeqSprotDeathTest, RefusesEveryFile) {
  const std::string refusal = error_frame(1, "read_seq_sprot", "Not supporting swiss-prot at this time\n");
  for (const std::string& text : {std::string(), kCytochrome}) {
    SeqRecord seq;
    EXPECT_FATAL_OUTPUT(read_seq_sprot(stream_over(text), seq), refusal);
  }
}

TEST(ParseSeqSprot, ReadsEntriesInARow) {
  std::FILE* in = stream_over(kCytochrome + entry("     mkvw\n"));
  SeqRecord seq;
  seq.sRes = "kept";
  seq.hasSRes = 1;
  EXPECT_EQ(parse_seq_sprot(in, seq), 1);
  EXPECT_EQ(seq.acc, "   CYC");  // six characters as they stand
  EXPECT_EQ(seq.title, "CYTOCHROME C.\n");
  EXPECT_EQ(seq.pRes, kCytochromeResidues);
  EXPECT_EQ(seq.numRes, static_cast<int>(kCytochromeResidues.size()));
  EXPECT_EQ(seq.sRes, "kept");
  EXPECT_EQ(seq.hasSRes, 1);

  SeqRecord second;
  EXPECT_EQ(parse_seq_sprot(in, second), 1);
  EXPECT_EQ(second.acc, "   TES");
  EXPECT_EQ(second.title, "test entry\n");
  EXPECT_EQ(second.pRes, "MKVW");  // lower case is welcome here

  SeqRecord third;
  EXPECT_EQ(parse_seq_sprot(in, third), -1);
  std::fclose(in);
}

TEST(ParseSeqSprot, ResidueResults) {
  SprotParse stray = parse(entry("     MKV1W\tA\n"));
  EXPECT_EQ(stray.result, -20);
  EXPECT_EQ(stray.seq.pRes, "MKVWA");
  EXPECT_EQ(stray.printed, "");

  EXPECT_EQ(parse(entry(std::string(4000, 'L') + "\n")).result, 1);
  SprotParse over = parse(entry("1" + std::string(4001, 'L') + "\n"));
  EXPECT_EQ(over.result, -30);  // replaces the earlier -20
  EXPECT_EQ(over.seq.numRes, 4000);

  SprotParse few = parse(entry("     M1K\n"));
  EXPECT_EQ(few.result, -40);
  EXPECT_EQ(few.seq.pRes, "MK");
  // Without a closing '/', the residues run to the end of input.
  EXPECT_EQ(parse("ID x\nDE t\nSQ\nMKV").result, 1);
}

TEST(ParseSeqSprot, MissingPartsAndWarnings) {
  EXPECT_EQ(parse("").result, -1);
  EXPECT_EQ(parse("ID   A\n").result, -1);
  EXPECT_EQ(parse("ID   A\nDE   t\n").result, -1);

  SprotParse noAcc = parse("XX junk\nID");
  EXPECT_EQ(noAcc.result, 0);
  EXPECT_EQ(noAcc.printed, error_frame(0, "read_seq_sprot", "Unable to read accession for sequence\n"));

  SprotParse noTitle = parse("ID   P1234X STANDARD\nDE   ");
  EXPECT_EQ(noTitle.result, 0);
  EXPECT_EQ(noTitle.seq.acc, "   P12");
  EXPECT_EQ(noTitle.printed, error_frame(0, "read_seq_sprot", "Unable to read title for sequence    P12\n"));
}
