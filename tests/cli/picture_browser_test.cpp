// ravlin-align's pictures in a real browser (headless Chromium): the page
// is not blank, shows colour where the residues are, its DOM holds one
// helix element per helix run and one strand element per strand run of the
// input's structure, scripts find a sequence's helices by its whole id,
// the pointer over a residue names it, and no id or number runs out of its
// pane.
#include <map>
#include <sstream>
#include <string>

#include "support/test_support.hpp"

namespace {

using testsupport::count_of;
using testsupport::RunResult;
using testsupport::shell_quote;
using testsupport::TempDir;

constexpr const char* kChromium = "/usr/bin/chromium";
// The fills of Clustal X's classes, flat in the middle of every cell.
constexpr const char* kClustalFills = "'#80a0f0' '#f01505' '#c048c0' '#15c015' '#f08080' '#f09048' '#c0c000' '#15a4a4'";

std::string example(const std::string& name) { return shell_quote(testsupport::source_path("examples/" + name)); }

// Moves the pointer over points of the blocks (in the blocks' own
// coordinates) and keeps what the hover box says at each ("-" for nothing)
// in the attribute data-hover of the blocks; keeps how many helices
// `.helix[data-seq="ID"]` finds in data-found, and how many ids reach into
// the blocks or ruler and residue numbers stand left of them in data-outside.
std::string with_probe(std::string picture, const std::string& points, const std::string& id) {
  const std::string probe =
      "<script>(function () { var host = document.getElementById('blocks'), svg = host.ownerSVGElement || host;"
      " var seen = []; [" +
      points +
      "].forEach(function (p) { var q = svg.createSVGPoint(); q.x = p[0]; q.y = p[1];"
      " q = q.matrixTransform(host.getScreenCTM());"
      " svg.dispatchEvent(new PointerEvent('pointermove', {clientX: q.x, clientY: q.y}));"
      " var tip = host.querySelector('.tip'); seen.push(tip.getAttribute('display') ? '-' : tip.textContent); });"
      " host.setAttribute('data-hover', seen.join('|'));"
      " host.setAttribute('data-found', document.querySelectorAll('.helix[data-seq=\"" +
      id +
      "\"]').length);"
      " var left = host.getScreenCTM().e, outside = 0;"
      " document.querySelectorAll('text.id').forEach(function (t) { if (t.getBoundingClientRect().right > left) "
      "outside++; });"
      " document.querySelectorAll('text.rul, text.num').forEach(function (t) { if (left > "
      "t.getBoundingClientRect().left) outside++; });"
      " host.setAttribute('data-outside', outside); })();</script>\n";
  picture.insert(picture.rfind(picture.starts_with("<?xml") ? "</svg>" : "</body>"), probe);
  return picture;
}

TEST(PictureBrowser, PicturesShowResiduesAndStructure) {
  if (!std::filesystem::exists(kChromium))
    GTEST_SKIP() << "Chromium (Debian package chromium) is not installed: the pictures cannot be checked in a browser";
  // Two UniProt ids alike in their first 12 characters, where the report cuts ids.
  const std::map<std::string, std::string> uniprot = {
      {"cyc.fa",
       ">sp|P00045|CYC7_YEAST Cytochrome c iso-2\nMAKESTGFKPGSAKKGATLFKTRCQQCHTIEEGG\n"
       ">sp|P00044|CYC1_YEAST Cytochrome c iso-1\nMTEFKAGSAKKGATLFKTRCLQCHTVEKGG\n"},
      {"cyc.ss.fa",
       ">sp|P00045|CYC7_YEAST\nCHHHHHCCCCCHHHHHHCCCEEEECCCCCHHHCC\n>sp|P00044|CYC1_"
       "YEAST\nCCHHHHCCCCHHHHHHHHCCCEEECCCCCC\n"}};
  const struct {
    const char* what;
    std::map<std::string, std::string> files;  // written into the run's directory
    std::string args;
    std::string file;
    int helices, strands;  // runs of H, G, I and of E, B in the structure file, counted by hand
    std::string id;        // whose helices a script looks for
    int itsHelices;
    bool residueColours;  // residues in Clustal X's fills
    std::string points;   // where the pointer goes: cell centres (column * 10 + 5, row top + 7), the last in a gap
    std::string hovers;   // from the input files, by hand
  } cases[] = {
      {"page, Clustal X colours",
       {},
       "-f html " + example("gluts.fa") + " --ss " + example("gluts.ss.fa"),
       "out.html",
       135,
       70,
       "1hna",
       10,
       true,
       "[195, 38], [35, 38]",
       "1hna I16 helix|-"},
      {"standalone drawing, anchors, no colours",
       {},
       // The designed strategy's columns, where the pointer positions were worked out.
       "-f svg --colour none --mode designed " + example("pla2_anchored.fa") + " -s " + example("pla2_anchored.ss.fa") +
           " --anchors " + example("pla2_anchored.anchors.fa"),
       "out.svg",
       38,
       27,
       "1bp2",
       7,
       false,
       "[475, 38], [245, 38], [145, 96]",
       "1bp2 H48 helix, anchor 1|1bp2 Y25 strand, gap-free group|-"},
      // The second sequence aligns after 4 gaps; each row has a structure track.
      {"UniProt ids, whole", uniprot, "-f html --colour none --ss cyc.ss.fa cyc.fa", "out.html", 5, 2,
       "sp|P00045|CYC7_YEAST", 3, false, "[15, 38], [65, 67], [5, 67]",
       "sp|P00045|CYC7_YEAST A2 helix|sp|P00044|CYC1_YEAST E3 helix|-"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    const TempDir dir;
    for (const auto& [name, text] : c.files) dir.write(name, text);
    const RunResult run = testsupport::run_program(RAVLIN_ALIGN_BIN, "-q -o " + c.file + " " + c.args, "", dir.path());
    ASSERT_EQ(run.status, 0);
    const std::string probed = "probed-" + c.file;
    dir.write(probed, with_probe(dir.read(c.file), c.points, c.id));
    const RunResult browser = testsupport::run_command(
        std::string(kChromium) +
            " --headless --no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking"
            " --disable-component-update --disable-sync --hide-scrollbars --user-data-dir=profile"
            " --window-size=800,600 --screenshot=shot.png --dump-dom file://" +
            dir.file(probed).string() + " 2>/dev/null",
        "", dir.path());
    ASSERT_EQ(browser.status, 0);
    const std::string& dom = browser.out;
    EXPECT_EQ(dom.find("parsererror"), std::string::npos) << "the file does not parse";
    EXPECT_EQ(count_of(dom, "class=\"helix\""), c.helices);
    EXPECT_EQ(count_of(dom, "class=\"strand\""), c.strands);
    EXPECT_NE(dom.find("data-hover=\"" + c.hovers + "\""), std::string::npos) << "hover texts: " << c.hovers;
    EXPECT_NE(dom.find("data-found=\"" + std::to_string(c.itsHelices) + "\""), std::string::npos);
    EXPECT_NE(dom.find(">" + c.id + "<title>"), std::string::npos) << "the id pane shows the whole id";
    EXPECT_NE(dom.find("data-outside=\"0\""), std::string::npos) << "an id or a number out of its pane";

    const RunResult pixels = testsupport::run_command(
        "/usr/bin/python3 " + shell_quote(testsupport::source_path("tests/cli/png_pixels.py").string()) + " shot.png " +
            kClustalFills,
        "", dir.path());
    ASSERT_EQ(pixels.status, 0) << pixels.out;
    std::istringstream numbers(pixels.out);
    double width = 0, height = 0, nonWhite = 0, coloured = 0, filled = 0;
    numbers >> width >> height >> nonWhite >> coloured >> filled;
    ASSERT_EQ(width * height, 800.0 * 600.0);
    EXPECT_GT(nonWhite / (width * height), 0.10) << "blank screenshot";
    EXPECT_GT(coloured / (width * height), 0.02) << "no colour: neither residues nor structure";
    // Clustal X's fills cover a good part of the residues (and the heading
    // takes the top of the page); without colours there are none.
    if (c.residueColours) {
      EXPECT_GT(filled / (width * height), 0.05);
    } else {
      EXPECT_EQ(filled, 0.0);
    }
  }
}

}  // namespace
