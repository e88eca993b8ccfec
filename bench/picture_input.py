"""Writes a synthetic family for timing ravlin-align's pictures:
picture_input.py COUNT LENGTH OUT_PREFIX makes OUT_PREFIX.fa (COUNT
sequences of about LENGTH residues: mutated copies of one random sequence,
about 95% identity with no insertions or deletions, so that the
alignment is as wide as the sequences) and
OUT_PREFIX.ss.fa (a structure per sequence: helices, strands and coil in
runs of typical lengths). The seed is fixed, so the files are the same on
every run."""
import random
import sys

RESIDUES = "ACDEFGHIKLMNPQRSTVWY"
STATES = [("H", 8, 20), ("E", 4, 9), ("C", 2, 8), ("T", 2, 4)]


def structure(length, rng):
    out = []
    while len(out) < length:
        state, low, high = rng.choice(STATES)
        out.extend(state * rng.randint(low, high))
        out.extend("C" * rng.randint(1, 4))
    return "".join(out[:length])


def mutated(seq, rng):
    out = []
    for ch in seq:
        # Substitutions only: every insertion would be a column of its own.
        out.append(ch if rng.random() > 0.05 else rng.choice(RESIDUES))
    return "".join(out)


def wrapped(text):
    return "\n".join(text[i:i + 60] for i in range(0, len(text), 60))


def main():
    count, length, prefix = int(sys.argv[1]), int(sys.argv[2]), sys.argv[3]
    rng = random.Random(13)
    root = "".join(rng.choice(RESIDUES) for _ in range(length))
    with open(prefix + ".fa", "w") as fa, open(prefix + ".ss.fa", "w") as ss:
        for k in range(count):
            seq = mutated(root, rng)
            fa.write(f">s{k + 1} synthetic\n{wrapped(seq)}\n")
            ss.write(f">s{k + 1}\n{wrapped(structure(len(seq), rng))}\n")


main()
