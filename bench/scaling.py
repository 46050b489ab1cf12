"""What the history costs when it grows: each operation at three sizes, beside the size before."""

import subprocess

from table import FRAME_MS, Row

SIZES = (200, 2_000, 20_000)
# Where a person would feel it: they happen with every copy.
BOUND = ("adding", "promoting")


def operations(build, size):
    output = subprocess.run([str(build / "bench" / "StoreScaling"), str(size)], check=True,
                            stdout=subprocess.PIPE).stdout.decode()
    return {what: float(taken) for what, taken in (line.split("\t") for line in output.splitlines())}


def measure(build):
    taken = {size: operations(build, size) for size in SIZES}
    for what in taken[SIZES[0]]:
        for before, size in zip((None, *SIZES), SIZES):
            grows = what in BOUND and before
            yield Row(f"{what}, {size:,} entries", "ms", taken[size][what], before and taken[before][what],
                      ratio_at_most=size / before if grows else None,
                      at_most=FRAME_MS if what in BOUND and size == SIZES[-1] else None)
