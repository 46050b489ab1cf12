"""wayland_clipboard_test.py PROGRAM PEERS [COMPOSITOR...]: what native programs copy is announced and kept, and what is
chosen in the surface is theirs to paste; what is dragged comes in and goes out."""

import signal
import subprocess
import sys
import time

from desktop import NOTCH_MIDDLE, reached, run_test, StageMissed, wait_until
from flow import Flow
from wayland import WaylandDesktop

SECRET = "correct horse battery staple"
COPIES = 40


def copies_of_a_hurried_program(desktop):
    """Twenty milliseconds after each other, each by a process that ends with the next one: on a machine that is busy
    elsewhere one may be gone before it is asked. Those that are kept stand in their order, the last of them on top."""
    for number in range(COPIES):
        subprocess.Popen(["wl-copy", "-t", "text/plain", f"copy {number}"], env=desktop.environment,
                         stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).wait(5)
        time.sleep(0.02)
    wait_until("the last copy", lambda: desktop.history()[0].get("text") == f"copy {COPIES - 1}")
    numbers = [int(item["text"].split()[1]) for item in desktop.history() if item.get("text", "").startswith("copy ")]
    if numbers != sorted(set(numbers), reverse=True):
        raise StageMissed(f"the copies once each and in their order, not {numbers}")
    reached(f"quick-copies, {len(numbers)} of {COPIES}")


def copies_a_secret(desktop):
    """The next copy is there, so the secret would be."""
    desktop.copy(SECRET, "x-kde-passwordManagerHint")
    desktop.copy_texts("after the secret")
    if any(SECRET in str(item) for item in desktop.history()):
        raise StageMissed("a history without the secret")
    reached("secret")


def copies_of_trying_programs(desktop):
    """A text that is far too large, and one whose program stands still while it is read, hold nothing up."""
    flood = desktop.home / "flood"
    flood.write_bytes(b"too much " * 11_000_000)
    for stands_still in (False, True):
        with open(flood) as text:
            owner = subprocess.Popen(["wl-copy", "--foreground", "-t", "text/plain"], env=desktop.environment, stdin=text,
                                     stderr=subprocess.DEVNULL)
        time.sleep(0.5)
        if stands_still:
            owner.send_signal(signal.SIGSTOP)
        desktop.copy_texts(f"after that, {stands_still}", seconds=5)
        owner.kill()
        owner.wait()
    reached("trying programs")


def chooses_by_click(desktop, flow):
    """The entry is on the clipboard, and nothing is announced as a new one."""
    before = desktop.history()
    flow.wait_notice_gone()
    flow.open_by_pointer()
    desktop.click(*flow.row(1))
    wait_until("the clicked entry on the clipboard",
               lambda: desktop.pasted().decode() == before[1]["text"])
    flow.leave()
    if sorted(item["id"] for item in desktop.history()) != sorted(item["id"] for item in before):
        raise StageMissed("the same entries after one was chosen")
    reached("chosen")


def peers_window(desktop, program, *words):
    """Another program's window, with its upper left corner at a known place."""
    before = desktop.pixel(200, 720)
    process = desktop.spawn([str(desktop.peers / program), "-platform", "wayland", *map(str, words)])
    wait_until(f"the window of {program}", lambda: desktop.pixel(200, 720) != before)
    time.sleep(0.5)
    return process


def drops(desktop, flow):
    """A file, then a text whose program stands still when it is dropped and goes on later; meanwhile the surface
    lives, and another program's text is dragged over it, which stays what it is open for. KWin tells of drags one
    listener alone, which is Qt: there it does not stand still."""
    file = desktop.home / "Agenda.pdf"
    file.write_bytes(b"%PDF-1.4\n")
    can_move_windows = desktop.compositor_name == "sway"
    if can_move_windows:
        other = peers_window(desktop, "DragSource", "Dragged meanwhile", file)
        desktop.swaymsg(f"[pid={other.pid}] move position 400 600")
        wait_until("the window of the next drag elsewhere", lambda: min(desktop.pixel(420, 700)) == 255)
    source = peers_window(desktop, "DragSource", "Dragged from afar", file)
    desktop.drag((160, 780), (NOTCH_MIDDLE, 20))
    wait_until("the surface open for the drop", flow.is_open)
    desktop.release()
    desktop.wait_for_entry("the dropped file", lambda item: item.get("filePaths") == [str(file)])
    flow.leave()
    desktop.drag((160, 680), (NOTCH_MIDDLE, 20))
    wait_until("the surface open for the drop", flow.is_open)
    if desktop.compositor_name == "kwin":
        desktop.release()
    else:
        source.send_signal(signal.SIGSTOP)
        desktop.release()
        # Longer than Qt would wait.
        if can_move_windows:
            desktop.drag((460, 680), (NOTCH_MIDDLE, 20))
        else:
            time.sleep(2.5)
        desktop.copy_texts("copied meanwhile")
        source.send_signal(signal.SIGCONT)
    desktop.wait_for_text("Dragged from afar")
    if can_move_windows:
        # Longer than it takes to fade.
        time.sleep(1)
        # Between the rows of entries, where the picture of the hint has its middle.
        if desktop.brightest(NOTCH_MIDDLE, 123, 132) < 100:
            raise StageMissed("the hint to drop here")
        desktop.release()
        desktop.wait_for_text("Dragged meanwhile")
    flow.leave()
    source.terminate()
    reached("drops")


def drags_out(desktop, flow):
    """Into another program's window, after which the surface closes."""
    came = desktop.home / "came.txt"
    peers_window(desktop, "DropTarget", came)
    expected = f"copy\n{desktop.history()[0]['text']}"
    flow.wait_notice_gone()
    flow.open_by_pointer()
    desktop.drag(flow.row(0), (200, 720))
    if not flow.is_open():
        raise StageMissed("the surface open while the button is down")
    desktop.release()
    wait_until("the dragged text", lambda: came.exists() and came.read_text() == expected)
    flow.wait_closed()
    reached("dragged-out")


def play(desktop):
    flow = Flow(desktop, reached)
    desktop.start()
    flow.copies()
    copies_of_a_hurried_program(desktop)
    copies_a_secret(desktop)
    copies_of_trying_programs(desktop)
    chooses_by_click(desktop, flow)
    drops(desktop, flow)
    drags_out(desktop, flow)


def main(program, peers, *compositors):
    return any(run_test(program, play, kind=WaylandDesktop, peers=peers, compositor=compositor,
                        settings={"language": "en"}) for compositor in compositors or ("sway",))


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
