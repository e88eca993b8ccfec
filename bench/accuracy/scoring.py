"""Reference alignments and their scores: reading aligned FASTA, and the
sum-of-pairs (SP) and total-column (TC) scores of a test alignment.

A reference column is scored when it holds upper-case residues; a reference
written in one case only is scored on every column. Within a scored column
only its upper-case residues count, so a core block marked in upper case is
scored on exactly the residues the reference vouches for.

SP is the share of the reference's residue pairs (two upper-case residues of
one scored column) that the test alignment also puts into one column. TC is
the share of scored columns with at least two such residues whose residues
all stand in one test column.
"""

GAP_CHARS = "-."


class AlignmentMismatch(ValueError):
    """The test alignment does not hold the reference's sequences."""


def read_fasta(path):
    """Returns [(id, text)] in file order; the id is the header's first word."""
    with open(path, encoding="ascii", errors="replace") as stream:
        return parse_fasta(stream.read())


def parse_fasta(text):
    records = []
    for line in text.splitlines():
        line = line.strip()
        if line.startswith(">"):
            words = line[1:].split()
            records.append([words[0] if words else "", []])
        elif line and records:
            records[-1][1].append(line)
    return [(name, "".join(parts)) for name, parts in records]


def ungapped(text):
    return "".join(ch for ch in text if ch not in GAP_CHARS and not ch.isspace())


def residue_columns(text):
    """Column of every residue of an aligned text, in residue order."""
    return [col for col, ch in enumerate(text) if ch not in GAP_CHARS and not ch.isspace()]


def score_alignment(reference, test):
    """Scores test against reference, both lists of (id, aligned text).

    Returns a dict with pairs (reference pairs scored), pairs_found,
    columns (scored columns with two or more residues), columns_found, and
    sp and tc (None when there is nothing to score)."""
    test_by_id = dict(test)
    check_same_sequences(reference, test_by_id)
    ref_texts = [text for _, text in reference]
    test_cols = [residue_columns(test_by_id[name]) for name, _ in reference]
    score_all = not any(ch.isupper() for text in ref_texts for ch in text) or not any(
        ch.islower() for text in ref_texts for ch in text)
    width = max((len(text) for text in ref_texts), default=0)
    next_residue = [0] * len(ref_texts)
    pairs = pairs_found = columns = columns_found = 0
    for col in range(width):
        placed = {}
        counted = 0
        for k, text in enumerate(ref_texts):
            ch = text[col] if col < len(text) else "-"
            if ch in GAP_CHARS:
                continue
            residue = next_residue[k]
            next_residue[k] += 1
            if score_all or ch.isupper():
                target = test_cols[k][residue]
                placed[target] = placed.get(target, 0) + 1
                counted += 1
        if counted < 2:
            continue
        pairs += counted * (counted - 1) // 2
        pairs_found += sum(n * (n - 1) // 2 for n in placed.values())
        columns += 1
        columns_found += 1 if len(placed) == 1 else 0
    return {
        "pairs": pairs,
        "pairs_found": pairs_found,
        "columns": columns,
        "columns_found": columns_found,
        "sp": pairs_found / pairs if pairs else None,
        "tc": columns_found / columns if columns else None,
    }


def check_same_sequences(reference, test_by_id):
    ref_ids = [name for name, _ in reference]
    if len(set(ref_ids)) != len(ref_ids):
        raise AlignmentMismatch("reference repeats an id")
    missing = [name for name in ref_ids if name not in test_by_id]
    if missing:
        raise AlignmentMismatch("test alignment lacks " + ", ".join(missing))
    for name, text in reference:
        if ungapped(text).upper() != ungapped(test_by_id[name]).upper():
            raise AlignmentMismatch("residues of %s differ from the reference" % name)
