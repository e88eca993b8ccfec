#!/usr/bin/env python3
"""Rebuilds the example sequence files in examples/ from HOMSTRAD families.

Usage: scripts/make_examples.py BENCH_DATA_DIR [OUT_DIR]

BENCH_DATA_DIR holds homstrad/<family>.ref.fa (the structure alignment,
aligned FASTA with '-' gaps) and homstrad/<family>.ss.fa (one DSSP code per
residue, ungapped). OUT_DIR defaults to the examples/ directory beside this
script. The sequences are written without gaps, in upper case, with the
DSSP codes reduced to ravlin's four structure codes. Each example is also
written in the form users have: NAME.fa (the residues), NAME.ss.fa (the DSSP
codes as they are, '-' for none) and, where it has anchors, NAME.anchors.fa.
"""

import os
import sys

# DSSP code -> ravlin structure code: helix, strand, turn, anything else coil.
DSSP_TO_RAVLIN = {"H": "H", "G": "H", "I": "H", "E": "B", "B": "B", "T": "T", "S": "T"}
LINE_LEN = 60
MAX_ID_LEN = 12
MIN_RES, MAX_RES = 3, 4000
# A text-format data line made only of these letters is read as a structure line.
STRUCTURE_LETTERS = set("BCHTX")

EXAMPLES = [
    {
        "out": "gluts.txt",
        "format": "text",
        "family": "gluts",
        "title": "glutathione S-transferase",
        "note": "Glutathione S-transferases: HOMSTRAD family gluts, all members.",
    },
    {
        "out": "pla2_anchored.txt",
        "format": "text",
        "family": "phoslip",
        "title": "phospholipase A2",
        "members": ["1bp2", "1p2p", "1poba", "1ae7", "1psj", "1bbc"],
        # Positions in the first member (bovine pancreatic PLA2, whose
        # sequential numbering is the family's standard numbering).
        "anchors": [("1bp2", 48, "1"), ("1bp2", 99, "2")],
        "groups": [("1bp2", 25, 33, "*")],
        "note": "Secreted phospholipases A2: six members of HOMSTRAD family phoslip,\n"
        "with the catalytic His48 (anchor 1) and Asp99 (anchor 2) anchored and the\n"
        "calcium-binding loop 25-33 marked as a group that gaps must not split.",
    },
    {
        "out": "lysozyme.molvane",
        "format": "molvane",
        "family": "ghf22",
        "title": "C-type lysozyme / alpha-lactalbumin",
        "note": "C-type lysozymes and alpha-lactalbumins: HOMSTRAD family ghf22, all members.",
    },
]


def read_fasta(path):
    order, seqs = [], {}
    name = None
    with open(path) as handle:
        for line in handle:
            line = line.strip()
            if line.startswith(">"):
                name = line[1:].split()[0]
                order.append(name)
                seqs[name] = ""
            elif name is not None:
                seqs[name] += line
    return order, seqs


def to_ravlin_structure(dssp):
    return "".join(DSSP_TO_RAVLIN.get(code, "C") for code in dssp)


def aligned_column(aligned, position):
    """Column of the position-th residue (1-based) of an aligned sequence."""
    count = 0
    for column, char in enumerate(aligned):
        if char != "-":
            count += 1
            if count == position:
                return column
    raise ValueError(f"residue {position} is beyond the sequence")


def residue_at_column(aligned, column):
    """0-based residue index at an alignment column, or None for a gap."""
    if aligned[column] == "-":
        return None
    return sum(1 for char in aligned[:column] if char != "-")


def user_line(name, aligned, example, length):
    """Anchor/group symbols of one member, '-' where none is given."""
    symbols = ["-"] * length
    for ref, start, end, symbol in example.get("groups", []):
        for position in range(start, end + 1):
            index = residue_at_column(aligned, aligned_column(example["aligned"][ref], position))
            if index is not None:
                symbols[index] = symbol
    for ref, position, digit in example.get("anchors", []):
        index = residue_at_column(aligned, aligned_column(example["aligned"][ref], position))
        if index is None:
            raise ValueError(f"{name}: anchor {digit} falls on a gap")
        symbols[index] = digit
    return "".join(symbols)


def chunks(text):
    return [text[i : i + LINE_LEN] for i in range(0, len(text), LINE_LEN)]


def residue_lines(residues):
    lines = chunks(residues)
    # A short last line such as "CHT" would be taken for structure codes.
    if len(lines) > 1 and set(lines[-1]) <= STRUCTURE_LETTERS:
        lines[-2] += lines.pop()
    if set(lines[-1]) <= STRUCTURE_LETTERS:
        raise ValueError("residue line made only of structure letters")
    return lines


def text_entry(name, title, residues, structure, user):
    out = [f">{name} {title}"]
    out += residue_lines(residues)
    out += chunks(structure)
    if user is not None:
        out += chunks(user)
    return "\n".join(out) + "\n\n"


def molvane_entry(name, title, residues, structure, user):
    out = ["PSEQ", f"n{title}", f"A{name}"]
    out += ["r" + line for line in chunks(residues)]
    out += ["S" + line for line in chunks(structure)]
    if user is not None:
        out += ["G" + line for line in chunks(user)]
    return "\n".join(out) + "\n\n"


def fasta_entry(name, title, text):
    header = f">{name} {title}" if title else f">{name}"
    return "\n".join([header] + chunks(text)) + "\n"


def build(example, bench_dir):
    family_dir = os.path.join(bench_dir, "homstrad")
    order, aligned = read_fasta(os.path.join(family_dir, example["family"] + ".ref.fa"))
    _, dssp = read_fasta(os.path.join(family_dir, example["family"] + ".ss.fa"))
    example["aligned"] = aligned
    members = example.get("members", order)
    has_user = bool(example.get("anchors") or example.get("groups"))
    comment = example["note"] + "\nSecondary structure: DSSP, reduced to H (helix), B (strand), T (turn), C (other).\n"
    text = comment + "Made by scripts/make_examples.py; see README.md for the source and its terms.\n\n"
    forms = {".fa": "", ".ss.fa": "", ".anchors.fa": ""}
    for name in members:
        residues = aligned[name].replace("-", "").upper()
        structure = to_ravlin_structure(dssp[name])
        if not residues.isalpha() or len(structure) != len(residues):
            raise ValueError(f"{name}: residues and structure do not match")
        if len(name) > MAX_ID_LEN or not MIN_RES <= len(residues) <= MAX_RES:
            raise ValueError(f"{name}: outside the program's limits")
        user = user_line(name, aligned[name], example, len(residues)) if has_user else None
        title = f"{example['title']}, PDB {name}"
        make = text_entry if example["format"] == "text" else molvane_entry
        text += make(name, title, residues, structure, user)
        forms[".fa"] += fasta_entry(name, title, residues)
        forms[".ss.fa"] += fasta_entry(name, "", dssp[name].upper())
        if user is not None:
            forms[".anchors.fa"] += fasta_entry(name, "", user)
    if ">" in comment:
        raise ValueError("a '>' in the comment would start an entry")
    return text, {suffix: form for suffix, form in forms.items() if form}


def main():
    if len(sys.argv) not in (2, 3):
        sys.exit(__doc__)
    bench_dir = sys.argv[1]
    out_dir = sys.argv[2] if len(sys.argv) == 3 else os.path.join(os.path.dirname(__file__), "..", "examples")
    for example in EXAMPLES:
        text, forms = build(example, bench_dir)
        outputs = {example["out"]: text}
        stem = os.path.splitext(example["out"])[0]
        outputs.update({stem + suffix: form for suffix, form in forms.items()})
        for name, content in outputs.items():
            path = os.path.join(out_dir, name)
            with open(path, "w") as handle:
                handle.write(content)
            print(f"wrote {path}")


if __name__ == "__main__":
    main()
