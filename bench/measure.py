"""measure.py BUILD RESULTS: how soon a copied text is in the history, how many of a burst get there, and how much
memory it takes, for Nimbarrow and for a clipboard manager of Debian's, on the same private desktop; then how the
surface moves.

Each has the desktop to itself while it is measured, because either would take time from the other. Both report an
entry as a line of text, and the same clock stamps the lines on arrival."""

import json
import pathlib
import queue
import statistics
import subprocess
import sys
import threading
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tests" / "desktop"))
from desktop import Desktop, wait_until
import frames

COPIES = 50
BURST = 40
# The peer turns escapes in a script into characters before it reads it.
PEER_WATCH = """
var end = String.fromCharCode(10), last = '';
while (true) {
    var text = str(read(0));
    if (text != last) { print(text + end); last = text; }
    sleep(1);
}
"""


class Watcher:
    """A process that prints each new entry; the lines are stamped when they arrive."""

    def __init__(self, process):
        self.lines = queue.Queue()
        threading.Thread(target=self._read, args=(process.stdout,), daemon=True).start()

    def _read(self, stream):
        for line in stream:
            self.lines.put((time.monotonic(), line.decode().rstrip("\n")))

    def wait_for(self, text, seconds=10):
        end = time.monotonic() + seconds
        while True:
            stamp, line = self.lines.get(timeout=max(end - time.monotonic(), 0.001))
            if line == text:
                return stamp


def measure_copies(copier, watcher, name):
    latencies = []
    for number in range(COPIES):
        text = f"{name} copy {number}"
        before = time.monotonic()
        copier.stdin.write((text + "\n").encode())
        copier.stdin.flush()
        latencies.append((watcher.wait_for(text) - before) * 1000)
        time.sleep(0.12)
    return {"median ms": statistics.median(latencies), "worst ms": max(latencies)}


def send_burst(copier, name):
    for number in range(BURST):
        copier.stdin.write(f"{name} burst {number}\n".encode())
        copier.stdin.flush()
        time.sleep(0.02)
    time.sleep(2)


def memory(pids):
    """Proportional set size in MB."""
    total = 0
    for pid in pids:
        for line in pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text().splitlines():
            if line.startswith("Pss:"):
                total += int(line.split()[1])
    return total / 1024


def measure_ours(desktop, build, copier):
    process = desktop.spawn([str(build / "bench" / "CopyLatency")], stdout=subprocess.PIPE)
    watcher = Watcher(process)
    watcher.wait_for("ready")
    results = measure_copies(copier, watcher, "ours")
    send_burst(copier, "ours")
    seen = 0
    while not watcher.lines.empty():
        seen += watcher.lines.get()[1].startswith("ours burst")
    results["entries of a burst"] = seen
    process.terminate()
    process.wait()
    # The memory is that of the whole program, with the same number of entries.
    desktop.start()
    for number in range(COPIES):
        copier.stdin.write(f"kept {number}\n".encode())
        copier.stdin.flush()
        time.sleep(0.05)
    wait_until("the entries on the disk", lambda: len(desktop.history()) == COPIES)
    time.sleep(3)
    results["memory MB"] = memory([desktop.nimbarrow.pid])
    desktop.stop()
    return results


def measure_peer(desktop, copier):
    server = desktop.spawn(["copyq"])
    wait_until("the peer", lambda: subprocess.run(
        ["copyq", "eval", "config('maxitems', 1000); 1"], env=desktop.environment, capture_output=True).returncode == 0)
    watch = desktop.spawn(["copyq", "eval", PEER_WATCH], stdout=subprocess.PIPE)
    time.sleep(1)
    results = measure_copies(copier, Watcher(watch), "peer")
    # It has no ear for anything milder while its script runs.
    watch.kill()
    watch.wait()
    send_burst(copier, "peer")
    count = desktop.call(["copyq", "eval", """
        var n = 0;
        for (var i = 0; i < count(); ++i) if (str(read(i)).indexOf('peer burst') === 0) ++n;
        print(n)"""])
    results["entries of a burst"] = int(count)
    time.sleep(3)
    children = pathlib.Path(f"/proc/{server.pid}/task/{server.pid}/children").read_text().split()
    results["memory MB"] = memory([server.pid, *children])
    desktop.call(["copyq", "exit"])
    return results


def main(build, results_file):
    build = pathlib.Path(build).resolve()
    with Desktop(build / "nimbarrow", settings={"historyLimit": 1000, "peekOnClipboard": False}) as desktop:
        copier = subprocess.Popen([str(build / "bench" / "Copier")], stdin=subprocess.PIPE,
                                  env={**desktop.environment, "QT_QPA_PLATFORM": "xcb"})
        desktop.processes.append(copier)
        time.sleep(1)
        ours = measure_ours(desktop, build, copier)
        peer = measure_peer(desktop, copier)
        owl = desktop.call([str(build / "bench" / "OwlIdle")]).decode()
    table = {what: {"nimbarrow": ours[what], "peer": peer[what], "ratio": ours[what] / peer[what]}
             for what in ours}
    print(f"{'what':<22}{'nimbarrow':>12}{'copyq':>12}{'ratio':>10}")
    for what, row in table.items():
        print(f"{what:<22}{row['nimbarrow']:>12.1f}{row['peer']:>12.1f}{row['ratio']:>10.2f}")
    with Desktop(build / "nimbarrow") as desktop:
        surface = frames.measure(desktop, build)
    for what, figures in surface.items():
        print(f"{what:<36}" + ", ".join(f"{name} {figure:.1f}" for name, figure in figures.items()))
    pathlib.Path(results_file).write_text(json.dumps({"copies": table, "surface": surface}, indent=2) + "\n")
    print("\n" + owl, end="")


if __name__ == "__main__":
    main(*sys.argv[1:])
