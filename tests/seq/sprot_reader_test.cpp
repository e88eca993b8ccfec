#include "seq/sprot_reader.hpp"

#include <cstdio>
#include <string>

#include "shell/text_input.hpp"
#include "support/test_support.hpp"

using testsupport::error_frame;

namespace {

UniqueFile stream_over(const std::string& text) {
  UniqueFile stream(std::tmpfile());
  std::fputs(text.c_str(), stream.get());
  std::rewind(stream.get());
  return stream;
}

const std::string kCytochrome =
    "ID   CYC_HUMAN      STANDARD;      PRT;   105 AA.\nAC   P99999;\nDE   CYTOCHROME C.\n"
    "DE   A SECOND DESCRIPTION LINE.\nOS   HOMO SAPIENS (HUMAN).\nSQ   SEQUENCE   105 AA;  11618 MW;\n"
    "     MGDVEKGKKI FIMKCSQCHT VEKGGKHKTG PNLHGLFGRK TGQAPGYSYT AANKNKGIIW\n"
    "     GEDTLMEYLE NPKKYIPGTK MIFVGIKKKE ERADLIAYLK KATNE\n//\n";

// A minimal entry around the given sequence lines.
std::string entry(const std::string& sequenceLines) {
  return "ID   TEST_1\nDE   test entry\nSQ   SEQUENCE\n" + sequenceLines + "//\n";
}

}  // namespace

TEST(ReadSeqSprotDeathTest, RefusesTheFormat) {
  SeqRecord seq;
  EXPECT_FATAL_OUTPUT(read_seq_sprot(stream_over(kCytochrome).get(), seq),
                      error_frame(1, "read_seq_sprot", "Not supporting swiss-prot at this time\n"));
}

TEST(ParseSeqSprot, ReadsEntriesInARow) {
  const UniqueFile in = stream_over(kCytochrome + entry("     mkvw\n"));
  SeqRecord seq, second, third;
  seq.sRes = "kept";
  EXPECT_EQ(parse_seq_sprot(in.get(), seq), 1);
  EXPECT_EQ(seq.acc, "   CYC");  // six characters as they stand
  EXPECT_EQ(seq.title, "CYTOCHROME C.\n");
  EXPECT_EQ(
      seq.pRes,
      "MGDVEKGKKIFIMKCSQCHTVEKGGKHKTGPNLHGLFGRKTGQAPGYSYTAANKNKGIIWGEDTLMEYLENPKKYIPGTKMIFVGIKKKEERADLIAYLKKATNE");
  EXPECT_EQ(seq.sRes, "kept");
  EXPECT_EQ(parse_seq_sprot(in.get(), second), 1);
  EXPECT_EQ(second.pRes, "MKVW");  // lower case is welcome here
  EXPECT_EQ(parse_seq_sprot(in.get(), third), -1);
}

TEST(ParseSeqSprot, ResultsAndWarnings) {
  const struct {
    std::string text;
    int result;
    std::string pRes;
    std::string printed;
  } cases[] = {
      {entry("     MKV1W\tA\n"), -20, "MKVWA", ""},  // stray characters are dropped quietly
      {entry(std::string(4000, 'L') + "\n"), 1, std::string(4000, 'L'), ""},
      {entry("1" + std::string(4001, 'L') + "\n"), -30, std::string(4000, 'L'), ""},  // replaces the earlier -20
      {entry("     M1K\n"), -40, "MK", ""},
      {"ID x\nDE t\nSQ\nMKV", 1, "MKV", ""},  // without a closing '/', the residues run to the end
      {"", -1, "", ""},
      {"ID   A\n", -1, "", ""},
      {"ID   A\nDE   t\n", -1, "", ""},
      {"XX junk\nID", 0, "", error_frame(0, "read_seq_sprot", "Unable to read accession for sequence\n")},
      {"ID   P1234X STANDARD\nDE   ", 0, "",
       error_frame(0, "read_seq_sprot", "Unable to read title for sequence    P12\n")},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text.substr(0, 40));
    SeqRecord seq;
    testing::internal::CaptureStdout();
    EXPECT_EQ(parse_seq_sprot(stream_over(c.text).get(), seq), c.result);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), c.printed);
    EXPECT_EQ(seq.pRes, c.pRes);
    EXPECT_EQ(seq.numRes, static_cast<int>(c.pRes.size()));
  }
}
