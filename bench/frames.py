"""How long the surface takes to open, and what its frames cost while it opens and while it scrolls, over a history
of 200 texts and 50 screenshots of 3840 x 2160."""

import datetime
import json
import statistics
import subprocess
import threading
import time
import uuid

from desktop import gradient_png, NOTCH_MIDDLE
from flow import BELOW_THE_SURFACE, CLIPBOARD_LEFT, FIRST_ROW_Y, STRIP_Y

TEXTS = 200
SCREENSHOTS = 50
OPENINGS = 12
WHEEL_STEPS = 60


def fill_history(desktop):
    """Writes the history as the program would have left it."""
    images = desktop.history_folder / "images"
    images.mkdir(parents=True, exist_ok=True)
    start = datetime.datetime(2026, 3, 1, 9, 0, tzinfo=datetime.timezone.utc)
    items = []

    def add(kind, **content):
        moment = start + datetime.timedelta(seconds=len(items))
        items.append({"id": str(uuid.uuid4()).upper(), "kind": kind, "isScreenshot": kind == "image", "pinned": False,
                      "createdAt": moment.strftime("%Y-%m-%dT%H:%M:%SZ"), **content})

    for number in range(TEXTS):
        add("text", text=f"Entry {number}: the quick brown fox jumps over the lazy dog")
    for number in range(SCREENSHOTS):
        path = images / f"Screenshot {number}.png"
        path.write_bytes(gradient_png(3840, 2160, (40 + number * 4, 90, 160), (91, 240 - number * 4, 168)))
        add("image", imagePath=str(path))
    (desktop.history_folder / "index.json").write_text(json.dumps(items[::-1]))


class FrameLog:
    """The frames that the program has drawn: when, after how much work, both in seconds, and how high the panel was."""

    def __init__(self, process):
        self.frames = []
        threading.Thread(target=self._read, args=(process.stdout,), daemon=True).start()

    def _read(self, stream):
        for line in stream:
            end, busy, height = (int(word) for word in line.split())
            self.frames.append((end / 1e6, busy / 1e6, height))

    def since(self, start):
        return [frame for frame in self.frames if frame[0] >= start]


def percentile(values, share):
    ordered = sorted(values)
    return ordered[min(len(ordered) - 1, round(share * (len(ordered) - 1)))]


def costs(frames):
    busy = [frame[1] * 1000 for frame in frames]
    return {"median ms": statistics.median(busy), "99th percentile ms": percentile(busy, 0.99), "frames": len(busy)}


def open_once(desktop, log):
    """From the pointer's way into the notch to the first frame of the grown panel, in ms, and all frames."""
    desktop.move(NOTCH_MIDDLE, 60)
    time.sleep(0.2)
    start = time.monotonic()
    desktop.xdotool("mousemove", NOTCH_MIDDLE, 10)
    time.sleep(1)
    frames = log.since(start)
    grown = [end for end, _, height in frames if height > 200]
    latency = (grown[0] - start) * 1000
    desktop.xdotool("mousemove", *BELOW_THE_SURFACE)
    time.sleep(1)
    return latency, frames


def scroll(desktop, log, place):
    desktop.move(NOTCH_MIDDLE, 10)
    time.sleep(1)
    desktop.move(*place)
    time.sleep(0.5)
    start = time.monotonic()
    for button in (5, 4):
        desktop.xdotool("click", "--repeat", WHEEL_STEPS, "--delay", 30, button)
    time.sleep(0.7)
    frames = log.since(start)
    desktop.xdotool("mousemove", *BELOW_THE_SURFACE)
    time.sleep(1)
    return frames


def measure(desktop, build):
    """Prints nothing; returns the figures by name."""
    fill_history(desktop)
    process = desktop.spawn([str(build / "bench" / "SurfaceFrames")], stdout=subprocess.PIPE)
    time.sleep(2)
    log = FrameLog(process)
    first, opening = open_once(desktop, log)
    later = []
    for _ in range(OPENINGS):
        latency, frames = open_once(desktop, log)
        later.append(latency)
        opening += frames
    results = {
        "first opening": {"ms": first},
        "later openings": {"median ms": statistics.median(later), "worst ms": max(later)},
        "frames while opening": costs(opening),
        "frames while scrolling the list": costs(scroll(desktop, log, (CLIPBOARD_LEFT + 90, FIRST_ROW_Y + 60))),
        "frames while scrolling the images": costs(scroll(desktop, log, (CLIPBOARD_LEFT + 90, STRIP_Y))),
    }
    process.terminate()
    process.wait()
    return results
