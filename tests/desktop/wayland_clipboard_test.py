"""wayland_clipboard_test.py PROGRAM PEERS [COMPOSITOR]: what native programs copy is announced and kept, and what is
chosen in the surface is theirs to paste."""

import subprocess
import sys
import time

from desktop import reached, StageMissed, wait_until
from flow import BELOW_THE_SURFACE, Flow
from wayland import run_wayland_test

SECRET = "correct horse battery staple"
COPIES = 40


def copies_of_a_hurried_program(desktop):
    """Twenty milliseconds after each other, each by a process of its own."""
    for number in range(COPIES):
        subprocess.Popen(["wl-copy", "-t", "text/plain", f"copy {number}"], env=desktop.environment,
                         stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).wait(5)
        time.sleep(0.02)
    expected = [f"copy {number}" for number in reversed(range(COPIES))]
    wait_until("every copy in its order",
               lambda: [item.get("text") for item in desktop.history()[:COPIES]] == expected)
    reached("quick-copies")


def copies_a_secret(desktop):
    """The next copy is there, so the secret would be."""
    desktop.copy(SECRET, "x-kde-passwordManagerHint")
    desktop.copy("after the secret")
    desktop.wait_for_entry("the copy after the secret", lambda item: item.get("text") == "after the secret")
    if any(SECRET in str(item) for item in desktop.history()):
        raise StageMissed("a history without the secret")
    reached("secret")


def chooses_by_click(desktop, flow):
    """The entry is on the clipboard, and nothing is announced as a new one."""
    before = desktop.history()
    flow.open_by_pointer()
    desktop.click(*flow.row(1))
    wait_until("the clicked entry on the clipboard",
               lambda: desktop.pasted().decode() == before[1]["text"])
    desktop.move(*BELOW_THE_SURFACE)
    flow.wait_closed()
    if sorted(item["id"] for item in desktop.history()) != sorted(item["id"] for item in before):
        raise StageMissed("the same entries after one was chosen")
    reached("chosen")


def play(desktop):
    flow = Flow(desktop, reached)
    desktop.start()
    flow.copies()
    copies_of_a_hurried_program(desktop)
    copies_a_secret(desktop)
    chooses_by_click(desktop, flow)


if __name__ == "__main__":
    sys.exit(run_wayland_test(sys.argv[1], sys.argv[2], play, compositor=sys.argv[3] if sys.argv[3:] else "sway",
                              settings={"language": "en"}))
