"""Whether what was copied a second before the program is killed is there after the next start."""

import signal
import time

from copier import Copier
from desktop import Desktop, NOTCH_MIDDLE, wait_until
from table import Row

TRIES = 50


def measure(build):
    with Desktop(build / "nimbarrow") as desktop:
        copier = Copier(desktop, build)
        kept = 0
        for number in range(TRIES):
            desktop.start()
            copier.text(f"kept {number}")
            time.sleep(1)
            desktop.stop(signal.SIGKILL)
            # What a slow compositor still shows of it is not to be taken for the next one.
            wait_until("the panel gone", lambda: not desktop.is_black(NOTCH_MIDDLE, 16))
            kept += any(item.get("text") == f"kept {number}" for item in desktop.history())
        # Each start has read what the one before had left, and written it with its own.
        texts = {item.get("text") for item in desktop.history()}
        after_restarts = sum(f"kept {number}" in texts for number in range(TRIES))
    return [Row(f"copied 1 s before kill -9, of {TRIES} tries on the disk", "", kept, exactly=TRIES),
            Row(f"copied 1 s before kill -9, of {TRIES} tries after the restarts", "", after_restarts, exactly=TRIES)]
