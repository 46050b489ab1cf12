"""How soon a copied text or picture is an entry of the history, and how many of a burst get there.

Both programs tell of an entry by a line of text, and the same clock stamps the lines on arrival. Nimbarrow's entry of
a picture has its file on the disk by then; the peer's is written half a second later."""

import statistics
import subprocess
import time

from copier import Copier
from desktop import Desktop
from history import screenshots
from lines import Lines
from peer import Peer
from table import Row

TEXTS = 50
PICTURES = 20
BURST = 40

# Prints what the newest entry has of text, for a picture an empty line. The peer turns escapes in a script into
# characters before it reads it.
PEER_WATCH = """
var end = String.fromCharCode(10), last = '';
while (true) {
    var text = str(read(0)), state = count() + text;
    if (state != last) { print(text + end); last = state; }
    sleep(1);
}
"""
PEER_BURST = """
var n = 0;
for (var i = 0; i < count(); ++i) if (str(read(i)).indexOf('burst') === 0) ++n;
print(n)
"""


def latencies(copier, entries, pictures):
    texts, images = [], []
    for number in range(TEXTS):
        text = f"copy {number}"
        copied = copier.text(text)
        texts.append((entries.moment_of(text) - copied) * 1000)
        time.sleep(0.12)
    for picture in pictures:
        copied = copier.png(picture)
        images.append((entries.moment_of("") - copied) * 1000)
        time.sleep(0.5)
    return {"text copied to entry, median of 50": statistics.median(texts),
            "text copied to entry, worst of 50": max(texts),
            "1080p PNG copied to entry, median of 20": statistics.median(images)}


def send_burst(copier):
    for number in range(BURST):
        copier.text(f"burst {number}")
        time.sleep(0.02)
    time.sleep(2)


def measure_ours(desktop, build, copier, pictures):
    process = desktop.spawn([str(build / "bench" / "CopyLatency")], stdout=subprocess.PIPE)
    entries = Lines(process)
    entries.moment_of("ready")
    figures = latencies(copier, entries, pictures)
    send_burst(copier)
    burst = sum(line.startswith("burst") for _, line in entries.taken())
    process.terminate()
    process.wait()
    return figures, burst


def measure_peer(desktop, copier, pictures):
    with Peer(desktop) as peer:
        entries = Lines(peer.watch(PEER_WATCH))
        time.sleep(1)
        figures = latencies(copier, entries, pictures)
        peer.stop_watching()
        send_burst(copier)
        return figures, int(peer.evaluate(PEER_BURST))


def measure(build):
    with Desktop(build / "nimbarrow") as desktop:
        copier = Copier(desktop, build)
        pictures = screenshots(desktop, PICTURES)
        ours, our_burst = measure_ours(desktop, build, copier, pictures)
        theirs, their_burst = measure_peer(desktop, copier, pictures)
    bounds = dict(zip(ours, (0.5, 0.5, 0.6)))
    return [*(Row(what, "ms", ours[what], theirs[what], ratio_at_most=bounds[what]) for what in ours),
            Row("entries of 40 copies 20 ms apart", "", our_burst, their_burst, exactly=BURST)]
