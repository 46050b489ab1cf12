"""The main flow as a person lives it: copy, see the notice, open the surface, paste, use the keyboard, drop."""

import hashlib
import pathlib
import time

from desktop import (gradient_png, NOTCH_HEIGHT, NOTCH_LEFT, NOTCH_MIDDLE, NOTCH_RIGHT, Peer, StageMissed,
                     wait_until)
from screen_reader import ScreenReader

# Where things are in the expanded surface, in points of the screen: 460 wide, centred on the notch.
SURFACE_LEFT = NOTCH_MIDDLE - 230
CLIPBOARD_LEFT = SURFACE_LEFT + 194
STRIP_Y = 90
FIRST_ROW_Y = 118
ROW_HEIGHT = 30
BELOW_THE_SURFACE = (NOTCH_MIDDLE, 600)


class Editor:
    """A text editor of another program, asked for its text by saving it."""

    def __init__(self, desktop, name="note.txt"):
        self.desktop = desktop
        self.file = desktop.home / name
        self.file.write_text("")
        self.process = desktop.spawn(["mousepad", "--disable-server", str(self.file)])
        window = wait_until("the editor's window", lambda: self._find(), 30)
        desktop.xdotool("windowsize", window, 700 * desktop.scale, 300 * desktop.scale)
        desktop.xdotool("windowmove", window, 400 * desktop.scale, 560 * desktop.scale)
        desktop.xdotool("windowactivate", "--sync", window)
        self.window = window
        time.sleep(0.5)
        desktop.click(750, 720)

    def _find(self):
        words = self.desktop.xdotool("search", "--sync", "--onlyvisible", "--class", "mousepad").split()
        return words[-1].decode() if words else None

    def text(self):
        self.desktop.key("ctrl+s")
        time.sleep(0.15)
        return self.file.read_text()

    def wait_for_text(self, what, expected):
        wait_until(f"{what} in the editor (it has {self.text()!r})", lambda: expected in self.text())


class Surface:
    """Whether it is open, and how the pointer opens it and lets it go; the same on any desktop."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.middle = NOTCH_MIDDLE / desktop.output_scale
        self.notch_height = NOTCH_HEIGHT / desktop.output_scale
        self.below = (self.middle, 500)

    def is_open(self):
        return self.desktop.is_black(int(self.middle) - 210, 200)

    def wait_open(self):
        wait_until("the surface grown down", self.is_open)
        time.sleep(0.4)

    def wait_closed(self):
        wait_until("the surface shrunk to the notch", lambda: not self.is_open() and not self.desktop.is_black(
            int(self.middle), int(self.notch_height) + 8))
        time.sleep(0.35)

    def open_by_pointer(self):
        self.desktop.move(self.middle, self.notch_height / 2)
        self.wait_open()

    def leave(self):
        self.desktop.move(*self.below)
        self.wait_closed()

    def stays_closed(self):
        """A pointer that rests where the surface was has not come back; one that moves there has."""
        self.open_by_key()
        self.desktop.move(self.middle, self.notch_height / 2)
        self.close_by_key()
        time.sleep(0.8)
        if self.is_open():
            raise StageMissed("a surface that stays closed below a pointer at rest")
        self.desktop.move(self.middle + 5, self.notch_height / 2 - 3)
        self.wait_open()
        self.leave()


class Flow(Surface):
    """Plays the stages in order; `show` is called with each stage's name when a person would look."""

    def __init__(self, desktop, show=lambda stage: None):
        super().__init__(desktop)
        self.below = BELOW_THE_SURFACE
        self.show = show
        # Used where the program has been told that somebody listens.
        self.reader = ScreenReader(desktop)

    def open_by_key(self):
        self.desktop.key("super+shift+v")
        self.wait_open()

    def close_by_key(self):
        self.desktop.key("Escape")
        self.wait_closed()

    def tabs_until(self, what, is_reached, presses=24):
        """Presses Tab until the keys are where they are wanted."""
        for _ in range(presses):
            if is_reached():
                return
            self.desktop.key("Tab")
            time.sleep(0.2)
        if not is_reached():
            raise StageMissed(f"{what} under the Tab key")

    def tabs_to(self, name):
        self.tabs_until(repr(name), lambda: name in self.focused())

    def focused(self):
        """The names of what has the keys."""
        return [node["name"] for node in self.reader.nodes() if node["focused"] and node["role"] != "frame"]

    def press(self, role, name):
        """As a screen reader does it."""
        try:
            wait_until(name, lambda: self.reader.press(role, name), 10)
        except StageMissed:
            raise StageMissed(f"a press of the {role} {name!r}, among {self.reader.controls()}") from None

    def wait_for_notice(self, what, pause=0.35):
        wait_until(f"a notice for {what}", lambda: self.desktop.are_ends_black(NOTCH_LEFT - 40, NOTCH_RIGHT + 140, 4), 8)
        time.sleep(pause)

    def wait_notice_gone(self):
        wait_until("the end of the notice", lambda: not self.desktop.is_black(NOTCH_LEFT - 40, 4), 8)
        time.sleep(0.35)

    # The stages.

    def copies(self):
        """Text, a link, an image and a file, each copied by another program and announced by a notice."""
        desktop = self.desktop
        picture = desktop.home / "Sunset.png"
        picture.write_bytes(gradient_png(640, 400, (246, 160, 77), (91, 63, 168)))
        document = desktop.home / "Budget 2026.ods"
        document.write_bytes(b"numbers")
        stages = (
            ("text", "Зустріч переносимо на п’ятницю, 14:30", None,
             lambda item: item["kind"] == "text" and item["text"].startswith("Зустріч")),
            ("link", "https://www.debian.org/releases/stable/", None,
             lambda item: item["kind"] == "link"),
            ("image", picture.read_bytes(), "image/png",
             lambda item: item["kind"] == "image" and _same_bytes(item["imagePath"], picture)),
            ("file", document.as_uri() + "\r\n", "text/uri-list",
             lambda item: item["kind"] == "files" and item["filePaths"] == [str(document)]),
        )
        for name, data, target, matches in stages:
            desktop.copy(data, target)
            self.wait_for_notice(name)
            self.show(f"notice-{name}")
            desktop.wait_for_entry(name, matches)
            self.wait_notice_gone()

    def hovers(self):
        self.open_by_pointer()
        self.show("surface")

    def row(self, index):
        return CLIPBOARD_LEFT + 60, FIRST_ROW_Y + ROW_HEIGHT * index + ROW_HEIGHT // 2

    def click_pastes(self, editor):
        """The second row, the link, goes into the editor; the surface closes by itself."""
        self.desktop.move(*self.row(1))
        time.sleep(0.4)
        self.show("hovered-row")
        self.desktop.click(*self.row(1))
        self.wait_closed()
        if self.desktop.pasted() != b"https://www.debian.org/releases/stable/":
            raise StageMissed("the clicked link on the clipboard")
        self.desktop.move(*BELOW_THE_SURFACE)
        editor.wait_for_text("the clicked link", "https://www.debian.org/releases/stable/")
        self.show("pasted-by-click")

    def leaves(self):
        self.open_by_pointer()
        self.leave()
        self.show("left")

    def keyboard(self, editor):
        """Down to the last row, Return pastes; then Delete, Escape, and the editor has the keyboard again."""
        desktop = self.desktop
        self.open_by_key()
        desktop.key("Down", "Down")
        time.sleep(0.3)
        self.show("keyboard-mode")
        desktop.key("Return")
        self.wait_closed()
        editor.wait_for_text("the text chosen with the keyboard", "Зустріч переносимо на п’ятницю, 14:30")
        before = len(desktop.history())
        self.open_by_key()
        desktop.key("Delete")
        wait_until("an entry less in the history", lambda: len(desktop.history()) == before - 1)
        self.show("deleted")
        self.close_by_key()
        desktop.xdotool("type", "--delay", "30", " back again")
        editor.wait_for_text("what was typed after Escape", "back again")
        self.show("keyboard-given-back")

    def drops(self, drag_source):
        """Text dragged out of another program, then a file."""
        desktop = self.desktop
        for what, place, matches in (
                ("text", drag_source.text_place, lambda item: item.get("text") == drag_source.text
                 and item.get("sourceApp") in ("Shelf", "Полиця")),
                ("file", drag_source.file_place, lambda item: item.get("filePaths") == [str(drag_source.file)])):
            desktop.drag(place, (NOTCH_MIDDLE, 20))
            wait_until(f"the surface open for the {what}", self.is_open)
            self.show("drop-hint-" + what)
            desktop.release()
            desktop.wait_for_entry(f"the dropped {what}", matches)
            time.sleep(0.5)
            self.leave()

    def restarts(self, **environment):
        before = self.desktop.history()
        if not before:
            raise StageMissed("a history to restart with")
        self.desktop.stop()
        self.desktop.start(**environment)
        self.open_by_pointer()
        self.show("after-restart")
        if self.desktop.history() != before:
            raise StageMissed("the same history after a restart")
        self.leave()


class DragSource(Peer):
    """A window of another program with a text and a file to drag out."""

    def __init__(self, desktop, peers):
        self.text = "Dragged from afar"
        self.file = desktop.home / "Agenda.pdf"
        self.file.write_bytes(b"%PDF-1.4\n")
        super().__init__(desktop, peers, "DragSource", 100, 600, self.text, self.file)
        self.text_place = (160, 680)
        self.file_place = (160, 780)


def play_main_flow(desktop, peers, show):
    flow = Flow(desktop, show)
    editor = Editor(desktop)
    desktop.start()
    show("at-rest")
    flow.copies()
    flow.hovers()
    flow.click_pastes(editor)
    flow.leaves()
    flow.keyboard(editor)
    flow.stays_closed()
    source = DragSource(desktop, peers)
    flow.drops(source)
    source.close()
    flow.restarts()


def _same_bytes(path, picture):
    digest = lambda file: hashlib.sha256(pathlib.Path(file).read_bytes()).digest()
    return pathlib.Path(path).exists() and digest(path) == digest(picture)
