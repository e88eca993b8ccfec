"""Reads an alignment with Biopython and checks its ids and ungapped residues
against the FASTA input: read_back.py ALIGNMENT FORMAT INPUT."""
import sys

from Bio import AlignIO, SeqIO

alignment = AlignIO.read(sys.argv[1], sys.argv[2])
expected = [(r.id, str(r.seq).upper()) for r in SeqIO.parse(sys.argv[3], "fasta")]
found = [(r.id, str(r.seq).replace("-", "")) for r in alignment]
if found != expected:
    sys.exit(f"read back {found}, expected {expected}")
print(f"{len(found)} sequences read back with their ids and residues")
