#!/usr/bin/env python3
"""Writes a FASTA file of synthetic protein families for speed runs.

    bench/make_families.py COUNT LENGTH FAMILIES [SEED] > out.fa

Each family starts from a random sequence of LENGTH residues drawn with
typical residue frequencies; its members are copies with about 25 percent
substitutions and 5 percent insertions and deletions. The file is the same
for the same arguments.
"""
import random
import sys

RESIDUES = "ACDEFGHIKLMNPQRSTVWY"
WEIGHTS = [83, 14, 55, 67, 39, 71, 23, 59, 58, 97, 24, 41, 47, 39, 55, 66, 53, 69, 11, 29]


def mutated(rng, seq):
    out = []
    for residue in seq:
        r = rng.random()
        if r < 0.025:
            continue
        if r < 0.05:
            out.append(rng.choices(RESIDUES, WEIGHTS)[0])
        out.append(rng.choices(RESIDUES, WEIGHTS)[0] if r < 0.30 else residue)
    return "".join(out)


def main():
    count, length, families = (int(a) for a in sys.argv[1:4])
    rng = random.Random(int(sys.argv[4]) if len(sys.argv) > 4 else 1)
    roots = ["".join(rng.choices(RESIDUES, WEIGHTS, k=length)) for _ in range(families)]
    for k in range(count):
        seq = mutated(rng, roots[k % families])
        print(f">fam{k % families}_{k}")
        for start in range(0, len(seq), 60):
            print(seq[start:start + 60])


main()
