#!/usr/bin/env python3
"""Simulated protein families with their true alignment, for the large-family
bench. Every file is the same for the same arguments (fixed seed).

    simulate.py family BLOSUM62 COUNT LENGTH OUT_PREFIX [--structures K] [--seed S]
    simulate.py embed BLOSUM62 REFERENCE.ref.fa COUNT OUT_PREFIX [--structure REFERENCE.ss.fa] [--seed S]

family: a root sequence of LENGTH residues with a secondary structure track
(helices, strands, loops) evolves down a random tree of COUNT leaves. Writes
OUT_PREFIX.fa (the leaves, unaligned, in a shuffled order), OUT_PREFIX.ref.fa
(their true alignment: residues that descend from one ancestral residue share
a column) and OUT_PREFIX.ss.fa (the structure track of K members, DSSP
letters).

embed: each member of a real reference alignment is the root of a subtree of
simulated homologs, about COUNT sequences in all; writes OUT_PREFIX.fa (the
reference members and their homologs, shuffled), OUT_PREFIX.ref.fa (the
reference itself, so only its members are scored) and, given the
reference's structure file, OUT_PREFIX.ss.fa (the structure of the reference
members that have one).

The tree: a clade of n leaves splits into k and n - k, k uniform in 1 .. n-1;
a clade's height (substitutions per site from it to its leaves) is
DEPTH * ln(n) / ln(COUNT), so every leaf is DEPTH from the root and close
relatives are close. On a branch of length t each residue is replaced with
probability 1 - exp(-t), by a residue drawn from its BLOSUM62 row
(frequencies p_b * 2^(S(a,b)/2) over b != a); insertions and deletions start
at each site at rate INDEL * t (a fifth of that inside helices and strands),
lengths geometric with mean 3; inserted residues are loops.
"""
import argparse
import math
import random
import sys

RESIDUES = "ARNDCQEGHILKMFPSTWYV"
# Background frequencies (per mille), used for the root and for insertions.
BACKGROUND = {"A": 74, "R": 52, "N": 45, "D": 53, "C": 25, "Q": 34, "E": 54, "G": 74, "H": 26, "I": 68,
              "L": 99, "K": 58, "M": 25, "F": 47, "P": 39, "S": 57, "T": 51, "W": 13, "Y": 32, "V": 73}
DEPTH = 0.6
INDEL = 0.035
CORE_INDEL_SHARE = 0.2
MEAN_INDEL = 3.0


def read_blosum(path):
    header, rows = None, {}
    with open(path, encoding="ascii") as stream:
        for line in stream:
            if line.startswith("#") or not line.strip():
                continue
            words = line.split()
            if header is None:
                header = words
                continue
            rows[words[0]] = dict(zip(header, (int(w) for w in words[1:])))
    return rows


def substitution_tables(blosum):
    """For each residue a, the residues b != a and their cumulative weights."""
    tables = {}
    for a in RESIDUES:
        others = [b for b in RESIDUES if b != a]
        weights = [BACKGROUND[b] * 2 ** (blosum[a][b] / 2) for b in others]
        tables[a] = (others, list(accumulate(weights)))
    return tables


def accumulate(values):
    total, out = 0.0, []
    for v in values:
        total += v
        out.append(total)
    return out


class Evolver:
    def __init__(self, rng, blosum_path):
        self.rng = rng
        self.tables = substitution_tables(read_blosum(blosum_path))
        self.columns = []  # the true alignment's column order (column ids)
        self.next_column = 0

    def new_column(self, after):
        """A column id placed right after column `after` (None: first)."""
        column = self.next_column
        self.next_column += 1
        at = 0 if after is None else self.columns.index(after) + 1
        self.columns.insert(at, column)
        return column

    def random_residue(self):
        return self.rng.choices(RESIDUES, [BACKGROUND[r] for r in RESIDUES])[0]

    def indel_length(self):
        length = 1
        while self.rng.random() > 1 / MEAN_INDEL and length < 20:
            length += 1
        return length

    def evolve(self, seq, t):
        """seq: list of [residue, state, column]; returns the child."""
        rng = self.rng
        change = 1 - math.exp(-t)
        child = []
        k = 0
        while k < len(seq):
            residue, state, column = seq[k]
            rate = INDEL * t * (CORE_INDEL_SHARE if state in "HE" else 1.0)
            r = rng.random()
            if r < rate / 2:  # deletion of this residue and a few after it
                k += self.indel_length()
                continue
            if rng.random() < change:
                others, cumulative = self.tables.get(residue, (None, None))
                if others:
                    residue = rng.choices(others, cum_weights=cumulative)[0]
            child.append([residue, state, column])
            if r > 1 - rate / 2:  # insertion after this residue
                after = column
                for _ in range(self.indel_length()):
                    after = self.new_column(after)
                    child.append([self.random_residue(), "C", after])
            k += 1
        return child


def structure_track(rng, length):
    """Loops of 2-8, helices of 8-20 and strands of 4-9 residues."""
    track = []
    while len(track) < length:
        track += "C" * rng.randint(2, 8)
        track += "H" * rng.randint(8, 20) if rng.random() < 0.55 else "E" * rng.randint(4, 9)
    return track[:length]


def clade_height(n, count):
    return DEPTH * math.log(n) / math.log(max(count, 2))


def descend(evolver, rng, seq, n, count, height, leaves):
    """Evolves seq (a clade of n leaves at `height`) down to its leaves."""
    stack = [(seq, n, height)]
    while stack:
        seq, n, height = stack.pop()
        if n == 1:
            leaves.append(seq)
            continue
        k = rng.randint(1, n - 1)
        for size in (k, n - k):
            below = clade_height(size, count) if size > 1 else 0.0
            stack.append((evolver.evolve(seq, max(height - below, 0.0)), size, below))


def aligned_rows(evolver, leaves):
    place = {column: at for at, column in enumerate(evolver.columns)}
    used = sorted({place[c] for leaf in leaves for _, _, c in leaf})
    squeeze = {at: k for k, at in enumerate(used)}
    rows = []
    for leaf in leaves:
        row = ["-"] * len(used)
        for residue, _, column in leaf:
            row[squeeze[place[column]]] = residue
        rows.append("".join(row))
    return rows


def write_fasta(path, records):
    with open(path, "w", encoding="ascii") as out:
        for name, text in records:
            out.write(">" + name + "\n")
            for start in range(0, len(text), 60):
                out.write(text[start:start + 60] + "\n")


def make_family(args):
    rng = random.Random(args.seed)
    evolver = Evolver(rng, args.blosum)
    states = structure_track(rng, args.length)
    root = [[evolver.random_residue(), s, evolver.new_column(k - 1 if k else None)] for k, s in enumerate(states)]
    leaves = []
    descend(evolver, rng, root, args.count, args.count, DEPTH, leaves)
    names = ["s%05d" % k for k in range(len(leaves))]
    rows = aligned_rows(evolver, leaves)
    order = list(range(len(leaves)))
    rng.shuffle(order)
    write_fasta(args.out + ".fa", [(names[k], "".join(r for r, _, _ in leaves[k])) for k in order])
    write_fasta(args.out + ".ref.fa", [(names[k], rows[k]) for k in range(len(leaves))])
    with_structure = sorted(rng.sample(range(len(leaves)), min(args.structures, len(leaves))))
    ss = [(names[k], "".join("-" if s == "C" else s for _, s, _ in leaves[k])) for k in with_structure]
    write_fasta(args.out + ".ss.fa", ss)


def read_fasta(path):
    records = []
    with open(path, encoding="ascii", errors="replace") as stream:
        for line in stream:
            line = line.strip()
            if line.startswith(">"):
                records.append([line[1:].split()[0], ""])
            elif line and records:
                records[-1][1] += line
    return records


def embed_family(args):
    rng = random.Random(args.seed)
    evolver = Evolver(rng, args.blosum)
    reference = read_fasta(args.reference)
    structure = dict(read_fasta(args.structure)) if args.structure else {}
    members = [(name, "".join(c for c in text if c.isalpha()).upper()) for name, text in reference]
    per_member = max(1, (args.count - len(members)) // len(members))
    records = [(name, seq) for name, seq in members]
    for name, seq in members:
        root = [[r, "C", None] for r in seq]
        leaves = []
        descend(evolver, rng, root, per_member, max(per_member, 2), DEPTH, leaves)
        for k, leaf in enumerate(leaves):
            records.append(("%s_sim%04d" % (name, k), "".join(r for r, _, _ in leaf)))
    rng.shuffle(records)
    write_fasta(args.out + ".fa", records)
    write_fasta(args.out + ".ref.fa", reference)
    if structure:
        write_fasta(args.out + ".ss.fa", [(name, structure[name]) for name, _ in members if name in structure])


def main(argv):
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    sub = parser.add_subparsers(dest="what", required=True)
    family = sub.add_parser("family")
    family.add_argument("blosum")
    family.add_argument("count", type=int)
    family.add_argument("length", type=int)
    family.add_argument("out")
    family.add_argument("--structures", type=int, default=5)
    family.add_argument("--seed", type=int, default=1)
    embed = sub.add_parser("embed")
    embed.add_argument("blosum")
    embed.add_argument("reference")
    embed.add_argument("count", type=int)
    embed.add_argument("out")
    embed.add_argument("--structure")
    embed.add_argument("--seed", type=int, default=1)
    args = parser.parse_args(argv)
    sys.setrecursionlimit(10000)
    if args.what == "family":
        make_family(args)
    else:
        embed_family(args)


if __name__ == "__main__":
    main(sys.argv[1:])
