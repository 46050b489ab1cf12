"""From the start of the process until it is ready, over a full history.

Ready means that the program answers with all of its history behind it, seen from outside. Nimbarrow's answer is the
first frame of its panel: it is drawn by the thread that has loaded the history, the surface and the watch on the
clipboard before, in this order. The peer's is the number of its entries, told to a client that waits for it from the
start on; what the client itself takes is measured at a running server, and taken off."""

import statistics
import subprocess
import time

from copier import Copier
from desktop import Desktop
from history import ENTRIES, fill_ours, fill_peer
from lines import Lines
from peer import Peer
from table import Row

STARTS = 9


def measure_ours(desktop, build, copier):
    fill_ours(desktop)
    times = []
    for number in range(STARTS):
        start = time.monotonic()
        process = desktop.spawn([str(build / "SurfaceFrames")], stdout=subprocess.PIPE)
        times.append((Lines(process).next()[0] - start) * 1000)
        text = f"after start {number}"
        copier.text(text)
        desktop.wait_for_entry("a text copied after the start", lambda item: item.get("text") == text)
        if len(desktop.history()) != ENTRIES + number + 1:
            raise RuntimeError("The history was not there at the start.")
        process.terminate()
        process.wait()
    return statistics.median(times)


def answer(peer):
    """How many ms it takes until the peer has told how many entries it has."""
    start = time.monotonic()
    if peer.count() != ENTRIES:
        raise RuntimeError("The peer's history was not there at the start.")
    return (time.monotonic() - start) * 1000


def measure_peer(desktop):
    peer = Peer(desktop)
    with peer:
        fill_peer(desktop, peer)
    times = []
    for _ in range(STARTS):
        peer.launch()
        waited = answer(peer)
        times.append(waited - statistics.median(answer(peer) for _ in range(5)))
        peer.stop()
    return statistics.median(times)


def measure(build):
    with Desktop(build / "nimbarrow", settings={"historyLimit": 1000}) as desktop:
        ours = measure_ours(desktop, build, Copier(desktop, build))
    # Apart: the peer would make another entry of what was copied last.
    with Desktop(build / "nimbarrow") as desktop:
        theirs = measure_peer(desktop)
    return [Row(f"process start to ready, {ENTRIES} entries, median of {STARTS}", "ms", ours, theirs, ratio_at_most=1)]
