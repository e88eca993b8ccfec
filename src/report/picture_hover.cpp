// Sections: the script's code, the rows' data, and append_hover_script.
#include "report/picture_hover.hpp"

#include <string_view>

namespace {

// Reads the data object `d` written before it. Rows hold their aligned
// residues (`r`, "-" for gaps), structure states (`s`: H helix, E strand,
// T turn, C coil, "." none), anchors and groups (`g`) and numbering (`n`)
// where they have them.
constexpr std::string_view kHoverCode = R"js(
var host = document.getElementById(d.host), svg = host.ownerSVGElement || host;
var ns = "http://www.w3.org/2000/svg", tip = document.createElementNS(ns, "g");
var box = document.createElementNS(ns, "rect"), label = document.createElementNS(ns, "text");
tip.setAttribute("class", "tip");
tip.setAttribute("display", "none");
box.setAttribute("height", 17);
box.setAttribute("rx", 3);
label.setAttribute("x", 4);
label.setAttribute("y", 12);
tip.appendChild(box);
tip.appendChild(label);
host.appendChild(tip);
var states = {H: " helix", E: " strand", T: " turn", C: " coil"}, counts = [];
function number(r, c) {
  if (!counts[r]) {
    counts[r] = new Int32Array(d.width);
    for (var i = 0, n = 0; i < d.width; i++) counts[r][i] = d.rows[r].r[i] == "-" ? n : ++n;
  }
  var n = counts[r][c], nums = d.rows[r].n;
  return nums && n < nums.length ? nums[n] : n;
}
function describe(x, y) {
  var b = Math.floor(y / d.bh), top = y - b * d.bh, c = b * d.bw + Math.floor(x / d.cell);
  if (x < 0 || x >= d.bw * d.cell || b < 0 || c >= d.width) return "";
  for (var r = 0; r < d.rows.length; r++) {
    if (top < d.rowY[r] || top >= d.rowY[r] + d.rh) continue;
    var row = d.rows[r], residue = row.r[c], group = row.g ? row.g[c] : "-";
    if (residue == "-") return "";
    var text = row.id + " " + residue + number(r, c) + (row.s && states[row.s[c]] || "");
    if (group == "*") return text + ", gap-free group";
    return group == "-" ? text : text + ", anchor " + group;
  }
  return "";
}
svg.addEventListener("pointermove", function (e) {
  var p = svg.createSVGPoint();
  p.x = e.clientX;
  p.y = e.clientY;
  p = p.matrixTransform(host.getScreenCTM().inverse());
  var text = describe(p.x, p.y);
  if (!text) return tip.setAttribute("display", "none");
  label.textContent = text;
  tip.removeAttribute("display");
  var w = label.getComputedTextLength() + 8;
  box.setAttribute("width", w);
  var x = p.x + 12 + w > d.right ? Math.max(0, p.x - 12 - w) : p.x + 12;
  var y = p.y + 40 > d.height ? p.y - 30 : p.y + 14;
  tip.setAttribute("transform", "translate(" + x + "," + y + ")");
});
svg.addEventListener("pointerleave", function () { tip.setAttribute("display", "none"); });
)js";

// Only with a confidence track: its value under the pointer (`conf`, one
// digit a column; the track's top `cy` and height `ch` within a block),
// else what the rows say.
constexpr std::string_view kConfidenceHoverCode = R"js(var describeRow = describe;
describe = function (x, y) {
  var b = Math.floor(y / d.bh), top = y - b * d.bh, c = b * d.bw + Math.floor(x / d.cell);
  if (x >= 0 && x < d.bw * d.cell && b >= 0 && c < d.width && top >= d.cy && top < d.cy + d.ch)
    return "column " + (c + 1) + ": confidence " + d.conf[c] + " of 9";
  return describeRow(x, y);
};
)js";

void append_number_field(std::string& out, std::string_view name, long value) {
  out += name;
  out += ':';
  append_int(out, value);
  out += ',';
}

// One letter a column for the script: the residue, '-' for a gap, '?' for
// anything that would not stay one character.
std::string residue_letters(const ViewRow& row) {
  std::string letters = row.residues;
  for (char& ch : letters) {
    if (ch == ' ') ch = '-';
    if (static_cast<unsigned char>(ch) >= 0x80 || static_cast<unsigned char>(ch) < 0x20) ch = '?';
  }
  return letters;
}

// The states as the script names them; empty when the row has none known.
std::string state_letters(const ViewRow& row) {
  std::string letters(row.residues.size(), '.');
  bool known = false;
  for (std::size_t c = 0; c < letters.size(); ++c) {
    const char state = c < row.structure.size() ? row.structure[c] : 'X';
    if (state_word(state).empty()) continue;
    letters[c] = is_helix(state) ? 'H' : is_strand(state) ? 'E' : state == 'T' ? 'T' : 'C';
    known = true;
  }
  return known ? letters : std::string();
}

// Anchor digits and group stars; empty when the row has neither.
std::string group_letters(const ViewRow& row) {
  std::string letters(row.residues.size(), '-');
  bool marked = false;
  for (std::size_t c = 0; c < letters.size() && c < row.groups.size(); ++c) {
    const char group = row.groups[c];
    if (group != '*' && (group < '1' || group > '5')) continue;
    letters[c] = group;
    marked = true;
  }
  return marked ? letters : std::string();
}

// The input's numbering, unless it is the running count.
bool has_own_numbering(const ViewRow& row) {
  for (std::size_t k = 1; k < row.resNums.size(); ++k)
    if (row.resNums[k] != static_cast<std::int32_t>(k)) return true;
  return false;
}

void append_row_data(std::string& out, const ViewRow& row) {
  out += "{id:\"";
  append_script_text(out, full_id(row));
  out += "\",r:\"";
  append_script_text(out, residue_letters(row));
  out += '"';
  const std::string states = state_letters(row);
  if (!states.empty()) out += ",s:\"" + states + '"';
  const std::string groups = group_letters(row);
  if (!groups.empty()) out += ",g:\"" + groups + '"';
  if (has_own_numbering(row)) {
    out += ",n:[";
    for (std::size_t k = 0; k < row.resNums.size(); ++k) {
      if (k > 0) out += ',';
      append_int(out, row.resNums[k]);
    }
    out += ']';
  }
  out += "},\n";
}

}  // namespace

void append_hover_script(std::string& out, const AlignmentView& view, const PictureLayout& layout) {
  out += "<script><![CDATA[\n(function () {\nvar d = {host:\"";
  out += kBlocksId;
  out += "\",";
  append_number_field(out, "cell", kCellWidth);
  append_number_field(out, "rh", kRowHeight);
  append_number_field(out, "bw", layout.blockWidth);
  append_number_field(out, "bh", layout.blockHeight);
  append_number_field(out, "width", view.width);
  append_number_field(out, "right", layout.bodyWidth);
  append_number_field(out, "height", layout.blocks * layout.blockHeight);
  const bool confidence = layout.confidenceY >= 0;
  if (confidence) {
    append_number_field(out, "cy", layout.confidenceY);
    append_number_field(out, "ch", kBarHeight);
    out += "conf:\"";
    append_script_text(out, view.confidence);
    out += "\",";
  }
  out += "rowY:[";
  for (std::size_t r = 0; r < layout.rowY.size(); ++r) {
    if (r > 0) out += ',';
    append_int(out, layout.rowY[r]);
  }
  out += "],\nrows:[\n";
  for (const ViewRow& row : view.rows) append_row_data(out, row);
  out += "]};";
  out += kHoverCode;
  if (confidence) out += kConfidenceHoverCode;
  out += "})();\n]]></script>";
}
