"""What the closed surface and a copy cost on a compositor, beside the same on an X server."""

import time

from copier import Copier
from copies import measure_ours, PICTURES
from desktop import Desktop, NOTCH_MIDDLE
from flow import BELOW_THE_SURFACE
from history import fill_ours, screenshots
from resting import IDLE, measure_program, use_own_libraries
from table import Row
from wayland import WaylandDesktop

TEXTS = "text copied to entry, median of 50"


def measure_session(desktop, build):
    """What resting.measure_program() tells, the frames of the idle minute, and how soon a text is an entry."""
    opened = []

    def open_once():
        opened.append(time.monotonic())
        desktop.move(NOTCH_MIDDLE, 10)
        time.sleep(3)
        desktop.move(*BELOW_THE_SURFACE)

    use_own_libraries(desktop, desktop.program)
    fill_ours(desktop)
    desktop.start()
    rest = measure_program(desktop.nimbarrow.pid, open_once)
    lines = [line.split() for line in desktop.log().splitlines()]
    moments = [int(words[0]) / 1e6 for words in lines if len(words) == 3 and all(word.isdigit() for word in words)]
    if not any(moment > opened[0] for moment in moments):
        raise RuntimeError("The opening has drawn no frames.")
    frames = sum(opened[0] - IDLE < moment < opened[0] for moment in moments)
    desktop.stop()
    copied, _ = measure_ours(desktop, build, Copier(desktop, build), screenshots(desktop, PICTURES))
    return *rest, frames, copied[TEXTS]


def measure(build):
    settings = {"historyLimit": 1000}
    with Desktop(build / "SurfaceFrames", settings=settings) as desktop:
        x11 = measure_session(desktop, build)
    with WaylandDesktop(build / "SurfaceFrames", build / "peers", settings=settings) as desktop:
        ours = measure_session(desktop, build)
    return [Row("sway beside X11: memory (PSS), never opened", "MB", ours[0], x11[0], ratio_at_most=1.15),
            Row("sway beside X11: memory (PSS), after an opening", "MB", ours[2], x11[2], ratio_at_most=1.15),
            Row("sway beside X11: frames of an idle minute", "", ours[3], x11[3], exactly=0),
            *(Row(f"sway beside X11: wakings, {name}", "/s", wakings, theirs, at_most=0.1)
              for (name, _, wakings), (_, _, theirs) in zip(ours[1], x11[1])),
            Row(f"sway beside X11: {TEXTS}", "ms", ours[4], x11[4], ratio_at_most=2)]
