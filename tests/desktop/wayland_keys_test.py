"""wayland_keys_test.py PROGRAM PEERS [COMPOSITOR...]: the hot key, and what is picked pasted into another program's window, on real
compositors without an X server."""

import subprocess
import sys
import time

from desktop import NOTCH_MIDDLE, reached, run_test, StageMissed, wait_until
from wayland import WaylandDesktop
from wayland_panel_test import OtherProgram, PanelFlow

CONTROL, SHIFT, META, ALT, S, V, RETURN, DOWN = 29, 42, 125, 56, 31, 47, 28, 108


class Terminal(OtherProgram):
    """A terminal over the whole screen that writes down what arrives in it."""

    def command(self):
        return ["foot", "-F", "sh", "-c", f"stty raw -echo; exec cat > '{self.typed}'"]


def expect_source(desktop, expected):
    source = desktop.history()[0].get("sourceApp")
    if source != expected:
        raise StageMissed(f"the program in front when it was copied, not {source!r}")


def play(desktop):
    flow = PanelFlow(desktop)
    flow.starts()
    terminal = Terminal(desktop)
    if desktop.lockers_are_surfaces():
        desktop.swaymsg("fullscreen", "disable")
    desktop.copy_texts("older", "newer")
    expect_source(desktop, "Foot")
    reached("the program in front")
    # The configuration's line does this.
    flow.open_by_key()
    desktop.key("Down", "Return")
    flow.wait_closed()
    wait_until("the picked entry in the terminal", lambda: "older" in terminal.text())
    reached("pasted from the keyboard")
    flow.open_by_pointer()
    desktop.click(flow.middle + 20, 82)
    wait_until("the clicked entry in the terminal", lambda: "newer" in terminal.text())
    reached("pasted by a click")
    terminal.types("x")


def chord(desktop, *codes):
    for code in codes:
        desktop.do("key", code, 1)
    for code in reversed(codes):
        desktop.do("key", code, 0)


def ask_shortcuts(desktop, method, *arguments):
    return subprocess.run(
        ["gdbus", "call", "--session", "--dest", "org.kde.kglobalaccel", "--object-path", "/kglobalaccel", "--method",
         f"org.kde.KGlobalAccel.{method}", "['ua.tessak.Nimbarrow', 'toggle-history', '', '']", *arguments],
        env=desktop.environment, capture_output=True, text=True, timeout=10).stdout


def play_on_kwin(desktop):
    desktop.start_unseen()
    wait_until("a hot key among the shortcuts", lambda: desktop._still_runs()
               and "301989974" in ask_shortcuts(desktop, "shortcut"), 20)
    reached("a start on KWin")
    before = desktop.pixel(NOTCH_MIDDLE, 490)
    desktop.spawn(["mousepad", "--disable-server"])
    wait_until("an editor", lambda: desktop.pixel(NOTCH_MIDDLE, 490) != before)
    time.sleep(1)
    desktop.copy_texts("older", "newer")
    for keys in ((META, SHIFT, V), (CONTROL, ALT, V)):
        chord(desktop, *keys)
        time.sleep(0.8)
        # The panel has the keyboard now, the editor has the person's attention.
        desktop.copy_texts(f"newest of {len(keys)} and {keys[0]}")
        expect_source(desktop, "Mousepad")
        for key in (DOWN, DOWN, RETURN):
            chord(desktop, key)
        wait_until("the entry that was picked", lambda: desktop.pasted() in (b"older", b"newer"))
        # As the system's settings do it.
        ask_shortcuts(desktop, "setForeignShortcut", "[201326678]")
        reached(f"an entry picked by {keys}")


def main(program, peers, *compositors):
    settings = {"language": "en", "pasteOnClick": True, "peekOnClipboard": False}
    return any(run_test(program, play_on_kwin if compositor == "kwin" else play, kind=WaylandDesktop, peers=peers,
                        compositor=compositor, settings=settings)
               for compositor in compositors or ("sway", "kwin"))


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
