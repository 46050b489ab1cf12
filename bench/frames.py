"""How long the surface takes to open over a full history, and what its frames cost while it opens, while it scrolls
and while a long title moves. Drawn in software, as the program always does."""

import statistics
import subprocess
import threading
import time

from desktop import Desktop, NOTCH_MIDDLE
from flow import BELOW_THE_SURFACE, CLIPBOARD_LEFT, FIRST_ROW_Y, STRIP_Y
from history import fill_ours
from player_test import Player
from table import FRAME_MS, Row

STARTS = 5
OPENINGS = 20
WHEEL_STEPS = 60
MARQUEE_SECONDS = 10


class LongPlayer(Player):
    """Plays something that no line holds."""

    def _track(self, title, *rest):
        return super()._track(f"{title} of an evening that goes on for as long as anybody cares to listen", *rest)


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


class Pointer:
    """One process that moves it all the time, so that none has to start first."""

    def __init__(self, desktop):
        self._process = subprocess.Popen(["xdotool", "-"], stdin=subprocess.PIPE, env=desktop.environment)
        desktop.processes.append(self._process)

    def move(self, x, y):
        """The moment of it."""
        moment = time.monotonic()
        self._process.stdin.write(f"mousemove {x} {y}\n".encode())
        self._process.stdin.flush()
        return moment


class Surface:
    """The program on a private desktop, with its frames."""

    def __init__(self, desktop, pointer, build):
        self.desktop = desktop
        self.pointer = pointer
        self.process = desktop.spawn([str(build / "SurfaceFrames")], stdout=subprocess.PIPE)
        self.log = FrameLog(self.process)
        time.sleep(3)

    def close(self):
        self.process.terminate()
        self.process.wait()

    def leave(self):
        self.pointer.move(*BELOW_THE_SURFACE)
        time.sleep(1)

    def open(self):
        """From the pointer's way into the notch to the first frame of the grown panel, in ms, and all frames."""
        self.pointer.move(NOTCH_MIDDLE, 60)
        time.sleep(0.2)
        start = self.pointer.move(NOTCH_MIDDLE, 10)
        time.sleep(1)
        frames = self.log.since(start)
        grown = next(end for end, _, height in frames if height > 200)
        return (grown - start) * 1000, frames

    def scroll(self, place):
        self.open()
        self.desktop.move(*place)
        time.sleep(0.5)
        start = time.monotonic()
        for button in (5, 4):
            self.desktop.xdotool("click", "--repeat", WHEEL_STEPS, "--delay", 30, button)
        time.sleep(0.7)
        frames = self.log.since(start)
        self.leave()
        return frames

    def marquee(self):
        """Frames with nothing else in them, some seconds after the opening."""
        self.open()
        time.sleep(2)
        start = time.monotonic()
        time.sleep(MARQUEE_SECONDS)
        frames = self.log.since(start)
        self.leave()
        return frames


def slowest(frames):
    """The 99th percentile of the work for a frame, in ms."""
    return statistics.quantiles([busy * 1000 for _, busy, _ in frames], n=100, method="inclusive")[98]


def frame_row(what, frames):
    return Row(f"99th percentile of {len(frames)} frames, {what}", "ms", slowest(frames), at_most=FRAME_MS)


def first_opening(desktop, pointer, build):
    surface = Surface(desktop, pointer, build)
    first = surface.open()
    surface.leave()
    surface.close()
    return first


def measure(build):
    with Desktop(build / "nimbarrow") as desktop:
        fill_ours(desktop)
        pointer = Pointer(desktop)
        firsts = [first_opening(desktop, pointer, build) for _ in range(STARTS)]
        opening = [frame for _, frames in firsts for frame in frames]
        surface = Surface(desktop, pointer, build)
        surface.open()
        surface.leave()
        later = []
        for _ in range(OPENINGS):
            latency, frames = surface.open()
            surface.leave()
            later.append(latency)
            opening += frames
        rows = [Row(f"pointer in the notch to a full frame, first time, median of {STARTS}", "ms",
                    statistics.median(latency for latency, _ in firsts), at_most=60),
                Row(f"pointer in the notch to a full frame, median of {OPENINGS}", "ms", statistics.median(later),
                    at_most=30),
                frame_row("opening", opening),
                frame_row("scrolling the list", surface.scroll((CLIPBOARD_LEFT + 90, FIRST_ROW_Y + 60))),
                frame_row("scrolling the images", surface.scroll((CLIPBOARD_LEFT + 90, STRIP_Y)))]
        player = LongPlayer(desktop)
        rows.append(frame_row("a long title moving", surface.marquee()))
        player.quit()
        return rows
