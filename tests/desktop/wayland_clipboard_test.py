"""wayland_clipboard_test.py PROGRAM PEERS: what native programs copy is announced and kept, and what is
chosen in the surface is theirs to paste."""

import os
import signal
import subprocess
import sys
import time

from desktop import NOTCH_MIDDLE, reached, StageMissed, wait_until
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


def drop_from(desktop, flow, start, before_the_drop=lambda: None):
    desktop.move(*start)
    desktop.do("press")
    for step in range(1, 13):
        time.sleep(0.08)
        desktop.do("move", start[0] + (NOTCH_MIDDLE - start[0]) * step // 12, start[1] + (20 - start[1]) * step // 12)
    desktop.place = (NOTCH_MIDDLE, 20)
    wait_until("the surface open for the drop", flow.is_open)
    time.sleep(0.3)
    before_the_drop()
    desktop.do("release")


def drops(desktop, flow, peers):
    """A file, then a text whose program stands still when it is dropped and goes on later; meanwhile the surface
    lives."""
    file = desktop.home / "Agenda.pdf"
    file.write_bytes(b"%PDF-1.4\n")
    source = subprocess.Popen([f"{peers}/DragSource", "Dragged from afar", str(file)],
                              env={**desktop.environment, "QT_QPA_PLATFORM": "wayland"})
    desktop.processes.append(source)
    wait_until("the drag source's window", lambda: "Drag source" in desktop.swaymsg("-t", "get_tree"))
    desktop.swaymsg('[title="Drag source"]', "floating", "enable,", "move", "position", "100", "600")
    time.sleep(0.5)
    drop_from(desktop, flow, (160, 780))
    desktop.wait_for_entry("the dropped file", lambda item: item.get("filePaths") == [str(file)])
    desktop.move(*BELOW_THE_SURFACE)
    flow.wait_closed()
    drop_from(desktop, flow, (160, 680), lambda: source.send_signal(signal.SIGSTOP))
    time.sleep(2.5)
    desktop.copy("copied meanwhile")
    desktop.wait_for_entry("a copy while a drop is read", lambda item: item.get("text") == "copied meanwhile")
    source.send_signal(signal.SIGCONT)
    desktop.wait_for_entry("the dropped text", lambda item: item.get("text") == "Dragged from afar")
    desktop.move(*BELOW_THE_SURFACE)
    flow.wait_closed()
    reached("drops")


def play(desktop, peers):
    flow = Flow(desktop, reached)
    desktop.start()
    flow.copies()
    copies_of_a_hurried_program(desktop)
    copies_a_secret(desktop)
    chooses_by_click(desktop, flow)
    drops(desktop, flow, os.path.abspath(peers))


if __name__ == "__main__":
    sys.exit(run_wayland_test(sys.argv[1], sys.argv[2], lambda desktop: play(desktop, sys.argv[2]),
                              settings={"language": "en"}))
