"""gnome_play.py PROGRAM: the whole program on GNOME, whose compositor has no layer for panels, through its X server, beside
windows of the compositor's own kind. Not for root. With a folder after PROGRAM its pictures are left there."""

import os
import pathlib
import subprocess
import sys
import time

from desktop import NOTCH_LEFT, reached, StageMissed, wait_until
from gnome import GnomeDesktop
from wayland_panel_test import PanelFlow

# What the top bar and a window are to be told from the panel by.
BAR = (0x31, 0x54, 0x7a)


class Window:
    """Over the whole screen, of another program; it writes down its text."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.file = desktop.home / "window"
        self.file.write_text("")
        script = pathlib.Path(__file__).resolve().parent / "peers" / "gtk_window.py"
        self.process = desktop.spawn([sys.executable, str(script), str(self.file)], stderr=open(desktop.home / "window.log", "w"))
        wait_until("another program's window with the keyboard", self.is_active, 30)
        time.sleep(1)

    def is_active(self):
        return "active" in self.file.read_text().partition("\n")[0]

    def clicks(self):
        return int((self.file.read_text().split() or ["0"])[0])

    def text(self):
        return self.file.read_text().partition("\n")[2]

    def types(self, text):
        before = self.text()
        self.desktop.type(text)
        wait_until(f"{text!r} in the other program (it has {self.text()!r})", lambda: self.text() == before + text)

    def copies(self, text):
        """Everything that stands in it, from its keyboard."""
        self.desktop.chord("Control", "a")
        self.desktop.type(text)
        self.desktop.chord("Control", "a")
        self.desktop.chord("Control", "c")

    def is_clicked(self, place):
        before = self.clicks()
        self.desktop.click(*place)
        wait_until(f"a click at {place} in the other program", lambda: self.clicks() > before)

    def close(self):
        self.process.terminate()
        self.process.wait()


class GnomeFlow(PanelFlow):
    def __init__(self, desktop, pictures):
        super().__init__(desktop)
        self.pictures = pictures

    def show(self, stage):
        reached(stage)
        if self.pictures:
            self.desktop.picture(self.pictures / (stage.replace(" ", "-") + ".png"))

    def has_notice(self):
        return self.desktop.is_black(NOTCH_LEFT / self.desktop.output_scale - 40, 4)

    def waits_for_rest(self):
        wait_until("the end of the notice", lambda: not self.has_notice(), 12)


def play(desktop, pictures=None):
    flow = GnomeFlow(desktop, pictures)
    desktop.ask("Main.panel.style = 'background-color: rgb(49, 84, 122)'; 1")
    wait_until("a top bar", lambda: desktop.pixel(500, 16) == BAR)
    flow.starts()
    flow.show("a panel above the top bar")

    agrees_to_hot_key(flow)
    told = report(desktop)
    print(told, end="")
    if ", xcb" not in told.splitlines()[0] or not all(
            any(line.split()[0] == part and "works" in line for line in told.splitlines()[1:])
            for part in ("notch", "panel", "clipboard", "hot", "keep")):
        raise StageMissed(f"what works here:\n{told}")
    reached("what works here")

    flow.hovers()
    window = Window(desktop)
    if not flow.is_at_rest():
        raise StageMissed("the notch above a window that fills the screen")
    flow.hovers()
    flow.show("hover above a native window")

    window.copies("first")
    wait_until("a notice", flow.has_notice, 8)
    time.sleep(0.4)
    flow.show("a notice of a native copy")
    desktop.wait_for_entry("a native copy", lambda item: item.get("text") == "first")
    flow.waits_for_rest()
    desktop.key("F2")
    time.sleep(2)
    if len(desktop.history()) != 1 or flow.has_notice():
        raise StageMissed("a secret that leaves no trace")
    reached("a secret")
    desktop.key("F3")
    desktop.wait_for_entry("a picture", lambda item: item["kind"] == "image")
    reached("a picture")
    desktop.key("F4")
    desktop.wait_for_entry("the last of forty copies", lambda item: item.get("text") == "number 40")
    reached("forty copies")
    desktop.copy("from x11")
    desktop.wait_for_entry("a copy of an X11 program", lambda item: item.get("text") == "from x11")
    reached("an X11 program's copy")
    flow.waits_for_rest()

    picks(flow, window)
    pastes(flow, window)
    flow.leaves_the_keyboard(window)
    flow.takes_the_keyboard(window)
    flow.lets_clicks_through(window)
    flow.stays_closed()
    window.close()
    starts_again(flow)
    outlives_nothing(flow)


def agrees_to_hot_key(flow):
    """The desktop asks by itself, as soon as the program has started."""
    desktop = flow.desktop
    wait_until("the question for the hot key", lambda: desktop.window("Add Keyboard Shortcuts"), 40)
    time.sleep(1)
    flow.show("the question for the hot key")
    answers(desktop, "Add Keyboard Shortcuts", from_right=40, from_top=21)
    toggles_by_hot_key(flow)
    reached("the hot key")


def answers(desktop, title, from_right, from_top):
    """With a button there. For a while after a dialog is to be seen it hears no clicks, and goes to its place."""
    def is_gone():
        frame = desktop.window(title)
        if not frame:
            return True
        x, y = frame[0] + frame[2] - from_right, frame[1] + from_top
        # One that has come below a pointer at rest may not know of it.
        desktop.move(x, y + 100)
        desktop.click(x, y)
        time.sleep(2)
        return not desktop.window(title)

    wait_until("the end of the question", is_gone, 20)
    time.sleep(1)


def toggles_by_hot_key(flow):
    flow.desktop.chord("Super", "Shift", "v")
    flow.wait_open()
    flow.desktop.chord("Super", "Shift", "v")
    flow.wait_closed()


def report(desktop):
    return subprocess.run([desktop.program, "--doctor"], env=desktop.environment, capture_output=True, text=True,
                          timeout=20).stdout


def play_without_portals(desktop, pictures=None):
    """As before GNOME 48: the question is a notification, and the key is one of those that start programs."""
    desktop.spawn(["/usr/libexec/gsd-media-keys"])
    flow = GnomeFlow(desktop, pictures)
    flow.starts()
    wait_until("the question for a custom key", lambda: desktop.ask("Main.messageTray._banner ? true : false"), 20)
    desktop.move(flow.middle, 90)
    place = wait_until("its answers", lambda: desktop.button("Add"))
    time.sleep(1)
    flow.show("the question for a custom key")
    desktop.click(*desktop.button("Add") or place)
    wait_until("the key in the settings", lambda: b"custom-keybindings/nimbarrow" in desktop.call(
        ["gsettings", "get", "org.gnome.settings-daemon.plugins.media-keys", "custom-keybindings"]))
    desktop.move(*flow.below)
    time.sleep(2)
    toggles_by_hot_key(flow)
    if "works" not in next(line for line in report(desktop).splitlines() if "hot key" in line):
        raise StageMissed("a hot key that is told")
    reached("the custom key")


def play_screens(desktop, pictures=None):
    """A scale between two whole ones, an output that goes and comes back, and a locked session."""
    flow = GnomeFlow(desktop, pictures)
    desktop.ask("Main.panel.style = 'background-color: rgb(49, 84, 122)'; 1")
    flow.starts()
    flow.show(f"a panel at scale {desktop.output_scale}")
    desktop.copy("Not for other eyes")
    wait_until("a notice", flow.has_notice, 8)
    time.sleep(0.4)
    flow.show("a notice at that scale")
    flow.waits_for_rest()
    flow.hovers()
    desktop.switch_output(on=False)
    wait_until("no panel on the other output", lambda: desktop.pixel(int(flow.middle), 4) == BAR)
    desktop.switch_output(on=True)
    wait_until("the panel on the output that is back", flow.is_at_rest)
    flow.hovers()
    flow.show("an output gone and back")
    desktop.copy("nor this")
    desktop.lock()
    places = [(int(flow.middle), 4), (int(flow.middle) + 130, 4), (int(flow.middle) - 210, 10)]
    for stage in ("a locked session", "a locked session asked to open"):
        # It is dark until somebody comes.
        for x in (flow.middle + 5, flow.middle, 100):
            desktop.move(x, flow.notch_height / 2)
        wait_until("a lock screen", lambda: desktop.pixel(100, 4) == BAR)
        time.sleep(1)
        if any(desktop.pixel(*place) != BAR for place in places):
            raise StageMissed("a lock screen above the panel")
        flow.show(stage)
        flow.toggles()


def picks(flow, window):
    desktop = flow.desktop
    desktop.move(flow.middle, flow.notch_height / 2)
    flow.wait_open()
    flow.show("the surface")
    # The second of the list.
    desktop.click(flow.middle + 60, 165)
    wait_until("the clicked entry on the clipboard", lambda: desktop.pasted() == b"number 40")
    flow.show("an entry clicked")
    desktop.move(*flow.below)
    flow.wait_closed()
    desktop.chord("Control", "a")
    desktop.chord("Control", "v")
    wait_until("it pasted in a native window", lambda: window.text() == "number 40")
    reached("an entry pasted by hand")


def pastes(flow, window):
    """The first entry that is picked from the keyboard has the desktop ask whether the program may type; the next ones
    arrive by themselves."""
    desktop = flow.desktop
    flow.toggles()
    flow.wait_open()
    flow.show("keyboard mode")
    desktop.key("Down", "Return")
    wait_until("the question whether it may type", lambda: desktop.window("Remote Desktop"), 20)
    # As in answers().
    time.sleep(4)
    flow.show("the question whether it may type")
    left, top, width, _ = desktop.window("Remote Desktop")
    desktop.click(left + width - 52, top + 144)
    time.sleep(1)
    flow.show("leave to type")
    answers(desktop, "Remote Desktop", from_right=42, from_top=22)
    wait_until("the keyboard back", window.is_active)
    token = desktop.home / "data" / "Nimbarrow" / "remote-desktop-token"
    wait_until("a leave that is remembered", token.exists)
    for downs in (3, 4):
        # Of copies that follow each other so fast some may be gone before they are read.
        entry = [item["text"] for item in desktop.history() if item["kind"] == "text"][downs]
        desktop.chord("Control", "a")
        flow.toggles()
        flow.wait_open()
        desktop.key(*["Down"] * downs, "Return")
        flow.wait_closed()
        wait_until(f"{entry!r} pasted by the portal", lambda: window.text() == entry)
    flow.show("pasted by the portal")


def starts_again(flow):
    """Neither consent is asked for again."""
    desktop = flow.desktop
    desktop.stop()
    flow.starts()
    time.sleep(8)
    if desktop.window("Add Keyboard Shortcuts"):
        raise StageMissed("a hot key without a question")
    toggles_by_hot_key(flow)
    if "works" not in next(line for line in report(desktop).splitlines() if "paste" in line):
        raise StageMissed("leave to type without a question")
    flow.show("another start")


def outlives_nothing(flow):
    """The session goes: what was copied last is on the disk."""
    desktop = flow.desktop
    # In the words of whichever notices it first.
    desktop.usual_log += ["The X11 connection broke", "X connection to"]
    desktop.copy("copied just before")
    wait_until("a notice", flow.has_notice, 8)
    desktop.server.kill()
    desktop.server.wait()
    status = desktop.nimbarrow.wait(15)
    if status != 0 or not any(item.get("text") == "copied just before" for item in desktop.history()):
        raise StageMissed(f"a history that is kept, and an end with 0, not {status}")
    reached("a session that is gone")


def main(program, pictures=None):
    if os.geteuid() == 0:
        print("missed: a user of less rights; the desktop does not run as root", file=sys.stderr)
        return 1
    pictures = pictures and pathlib.Path(pictures).resolve()
    for part, options in ((play_without_portals, {"services": ["org.gnome.Shell.Notifications"]}), (play, {}),
                          (play_screens, {"services": ["org.gnome.ScreenSaver"], "screens": 1.5})):
        with GnomeDesktop(program, settings={"language": "en"}, **options) as desktop:
            try:
                part(desktop, pictures)
                desktop.check_log()
            except StageMissed as missed:
                if pictures and desktop.server.poll() is None:
                    desktop.picture(pictures / "missed.png")
                print("missed:", missed, "\n" + desktop.log(), "\n" + desktop.shell_log()[-2000:], file=sys.stderr)
                return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
