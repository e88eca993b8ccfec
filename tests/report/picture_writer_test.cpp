// The picture's structure elements: one per helix or strand however gaps and
// block ends cut it, with the sequence's id and residue numbers; residues
// stretched over their cells; what the hover script reads; the marks; the
// column confidence in the pictures and in Stockholm.
#include "report/picture_writer.hpp"

#include <algorithm>
#include <string>
#include <vector>

#include "report/standard_writers.hpp"
#include "support/test_support.hpp"

namespace {

std::string written(const std::string& format, const AlignmentView& view, int blockWidth = 60) {
  const UniqueFile file(std::tmpfile());
  PictureOptions options;
  options.blockWidth = blockWidth;
  if (format == "stockholm") {
    write_stockholm_alignment(file.get(), view);
  } else if (format == "html") {
    write_html_picture(file.get(), view, options);
  } else {
    write_svg_picture(file.get(), view, options);
  }
  return testsupport::text_of(file.get());
}

// The value of the first name="..." in text.
std::string attribute(const std::string& text, const std::string& name) {
  const std::size_t at = text.find(name + "=\"") + name.size() + 2;
  return text.substr(at, text.find('"', at) - at);
}

// "class seq start-end pieces" for every helix and strand element, in
// order; a strand's pieces as "pieces/heads" (a head has seven points).
std::vector<std::string> structure_elements(const std::string& svg) {
  std::vector<std::string> found;
  for (std::size_t at = svg.find("<g class=\""); at != std::string::npos; at = svg.find("<g class=\"", at + 1)) {
    const std::string element = svg.substr(at, svg.find("</g>", at) - at);
    const std::string kind = attribute(element, "class");
    if (kind != "helix" && kind != "strand") continue;
    int pieces = 0, heads = 0;
    for (std::size_t p = element.find('<', 1); p != std::string::npos; p = element.find('<', p + 1)) {
      const std::string piece = element.substr(p, element.find('>', p) - p);
      if (!piece.starts_with("<rect") && !piece.starts_with("<polygon")) continue;
      ++pieces;
      const std::string points = piece.starts_with("<polygon") ? attribute(piece, "points") : "";
      if (std::count(points.begin(), points.end(), ',') == 7) ++heads;
    }
    std::string text = kind + " " + attribute(element, "data-seq") + " " + attribute(element, "data-start") + "-" +
                       attribute(element, "data-end") + " " + std::to_string(pieces);
    if (kind == "strand") text += "/" + std::to_string(heads);
    found.push_back(text);
  }
  return found;
}

// The row of the sequence `name`, with the report's id cut from it as the
// report cuts ids (12 characters, the last two a number).
ViewRow row_of(const std::string& name, const std::string& residues, const std::string& structure,
               bool hasStructure = true) {
  ViewRow row;
  row.id = name.size() <= 12 ? name : name.substr(0, 10) + "~1";
  row.name = name;
  row.header = name + " a protein";
  row.residues = residues;
  row.structure = structure;
  row.groups = std::string(residues.size(), '-');
  row.hasStructure = hasStructure;
  return row;
}

TEST(PictureWriter, OneElementPerHelixAndStrand) {
  static const std::vector<std::int32_t> numbering = {0, 101, 102, 103, 104, 105, 106, 107, 108, 109, 110};
  ViewRow numbered = row_of("n", "ACDEFGHIKL", "CHHHHCBBBC");
  numbered.resNums = numbering;
  const struct {
    const char* what;
    std::vector<ViewRow> rows;
    int blockWidth;
    std::vector<std::string> expected;
  } cases[] = {
      {"gaps cut a helix into pieces, not into helices",
       {row_of("a", "AC  DEF GHIK", "CH  HHH HHCC")},
       60,
       {"helix a 2-7 3"}},
      {"a block end cuts a strand; only its last piece has a head",
       {row_of("a", "ACDEFGHIKLMN", "CCCCBBBBBBCC")},
       6,
       {"strand a 5-10 2/1"}},
      {"strands of DSSP's E, and two strands apart",
       {row_of("a", "ACDEFGHIK", "EEBCCBBTT")},
       60,
       {"strand a 1-3 1/1", "strand a 6-7 1/1"}},
      {"numbers from the input's numbering", {numbered}, 60, {"helix n 102-105 1", "strand n 107-109 1/1"}},
      {"no structure, nothing drawn",
       {row_of("b", "ACDEF", "XXXXX", false), row_of("c", "ACDEF", "XHHXX")},
       60,
       {"helix c 2-3 1"}},
      {"ids escaped", {row_of("x&<y", "ACD", "HHH")}, 60, {"helix x&amp;&lt;y 1-3 1"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    AlignmentView view;
    view.width = static_cast<int>(c.rows[0].residues.size());
    view.rows = c.rows;
    view.consensus = std::string(static_cast<std::size_t>(view.width), '-');
    const std::string svg = written("svg", view, c.blockWidth);
    EXPECT_EQ(structure_elements(svg), c.expected);
    // Every residue and consensus letter drawn once, each text as wide as its columns.
    std::size_t letters = 0, residues = static_cast<std::size_t>(view.width);
    for (const ViewRow& row : c.rows)
      residues += row.residues.size() - static_cast<std::size_t>(testsupport::count_of(row.residues, " "));
    for (std::size_t at = svg.find("<text class=\"res\""); at != std::string::npos;
         at = svg.find("<text class=\"res\"", at + 1)) {
      const std::string text = svg.substr(at, svg.find("</text>", at) - at);
      const std::size_t length = text.size() - text.find('>') - 1;
      EXPECT_EQ(attribute(text, "textLength"), std::to_string(length * 10)) << text;
      letters += length;
    }
    EXPECT_EQ(letters, residues);
  }
}

// The hover script's rows (residues, states, anchors and groups, numbering,
// ids safe inside a script) and the marks: anchors boxed, groups underlined.
TEST(PictureWriter, HoverDataAndMarks) {
  static const std::vector<std::int32_t> numbering = {0, 101, 102, 103};
  ViewRow marked = row_of("p1", "MK VL", "HH CC");
  marked.groups = "1* **";
  ViewRow numbered = row_of("x&<y\"", "ACD  ", "XXXXX", false);
  numbered.resNums = numbering;
  AlignmentView view;
  view.width = 5;
  view.rows = {marked, numbered};
  view.consensus = "MK-VL";
  const std::string svg = written("svg", view);
  EXPECT_NE(svg.find("{id:\"p1\",r:\"MK-VL\",s:\"HH.CC\",g:\"1*-**\"},"), std::string::npos);
  EXPECT_NE(svg.find("{id:\"x\\u0026\\u003cy\\\"\",r:\"ACD--\",n:[0,101,102,103]},"), std::string::npos);
  EXPECT_NE(svg.find("<path class=\"anchor\" d=\"M1 32h8v12h-8z\"/>"), std::string::npos);
  EXPECT_NE(svg.find("<path class=\"grp\" d=\"M10 44h10M30 44h20\"/>"), std::string::npos);
  EXPECT_EQ(svg.find("date"), std::string::npos);
}

// The id pane shows every id whole (as wide as the longest) or, beyond 40
// characters, its start and end, unless two would then look alike; the
// hover texts name the whole id. A block's first column number starts at
// its left edge, and a tenth column's number too close to it is left out.
TEST(PictureWriter, IdPaneAndRulers) {
  const std::string longId = "abcdefghijklmnopqrstuvwxyz0123456789ABCDEFGHI";  // 45 characters
  const std::string twinA = "abcdefghijklmnopqrs_one_tail_of_the_two_twins";
  const std::string twinB = "abcdefghijklmnopqrs_two_tail_of_the_two_twins";
  const std::string residues(130, 'A');
  const struct {
    const char* what;
    std::vector<std::string> names;
    int width, blockWidth;
    std::vector<std::string> expected;  // parts of the SVG, in order
    std::vector<std::string> absent;
  } cases[] = {
      {"a long id shortened; two alike when shortened shown whole",
       {longId, twinA, twinB},
       1,
       60,
       {">abcdefghijklmnopqrs\xe2\x80\xa6z0123456789ABCDEFGHI<title>", ">" + twinA + "<title>", ">" + twinB + "<title>",
        "{id:\"" + longId + "\""},
       {}},
      {"three-digit block starts whole, a tenth column's number beside one left out",
       {"a"},
       130,
       59,
       {">1</text>", ">10</text>", ">50</text>", "<text class=\"rul first\" x=\"0\" y=\"11\">60</text>", ">70</text>",
        "<text class=\"rul first\" x=\"0\" y=\"11\">119</text>", "<text class=\"rul\" x=\"115\" y=\"11\">130</text>"},
       {">120<", "rul\" x=\"5\""}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    AlignmentView view;
    view.width = c.width;
    for (const std::string& name : c.names)
      view.rows.push_back(row_of(name, residues.substr(0, static_cast<std::size_t>(c.width)),
                                 std::string(static_cast<std::size_t>(c.width), 'X'), false));
    view.consensus = residues.substr(0, static_cast<std::size_t>(c.width));
    const std::string svg = written("svg", view, c.blockWidth);
    std::size_t at = 0;
    for (const std::string& part : c.expected) {
      at = svg.find(part, at);
      ASSERT_NE(at, std::string::npos) << part << "\nin\n" << svg;
    }
    for (const std::string& part : c.absent) EXPECT_EQ(svg.find(part), std::string::npos) << part;
    EXPECT_EQ(testsupport::count_of(svg, ">60</text>"), c.width >= 60 ? 1 : 0)
        << "a block's first column numbered once";
  }
}

// The column confidence where users read it: a #=GC line in Stockholm, a
// track of bars with its hover text in the pictures; without it, nothing
// of it (the whole runs' golden files hold the rest of those bytes).
TEST(PictureWriter, ColumnConfidenceInStockholmAndPictures) {
  const struct {
    const char* format;
    std::string confidence;
    std::vector<std::string> expected;  // parts of the output, in order
  } cases[] = {
      {"stockholm",
       "",
       {"# STOCKHOLM 1.0\n#=GS seq1 DE a protein\n#=GS seq2 DE a protein\nseq1         ACDEFG\nseq2         "
        "AC-EFG\n//\n"}},
      {"svg", "", {"height=\"92\""}},
      {"html", "", {"height=\"92\""}},
      // Block: rows at 16 and 30, consensus 48, conservation 62, confidence
      // 80 (bars up from 95); 0 a stub of 2, 9 the full 14; a path per digit.
      {"svg",
       "975500",
       {"height=\"110\"", ">confidence</text>",
        "<g class=\"conf\"><path fill=\"#b5deab\" d=\"M41 95h18v-2h-18z\"/><path fill=\"#50a353\" "
        "d=\"M21 95h18v-9h-18z\"/><path fill=\"#278038\" d=\"M11 95h8v-11h-8z\"/><path fill=\"#00501f\" "
        "d=\"M1 95h8v-14h-8z\"/></g>",
        "cy:80,ch:16,conf:\"975500\",", "\" of 9\""}},
      {"html", "975500", {"the confidence of each column", "height=\"110\"", "<g class=\"conf\">"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.format) + " " + c.confidence);
    AlignmentView view;
    view.width = 6;
    view.rows = {row_of("seq1", "ACDEFG", "XXXXXX", false), row_of("seq2", "AC EFG", "XXXXXX", false)};
    view.consensus = "AC-EFG";
    view.confidence = c.confidence;
    const std::string text = written(c.format, view);
    std::size_t at = 0;
    for (const std::string& part : c.expected) {
      at = text.find(part, at);
      ASSERT_NE(at, std::string::npos) << part << "\nin\n" << text;
    }
    if (c.confidence.empty()) {
      EXPECT_EQ(text.find("conf"), std::string::npos);
    }
  }
}

}  // namespace
