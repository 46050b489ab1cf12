"""handoff_test.py PROGRAM PEERS: what a person does with entries of the history, on a private desktop: opens them, drags
them out, looks at them, deletes them."""

import sys
import time

from desktop import gradient_png, Peer, reached, run_test, StageMissed, wait_until
from flow import CLIPBOARD_LEFT, Flow, STRIP_Y

FIRST_THUMB = (CLIPBOARD_LEFT + 30, STRIP_Y)
BESIDE_ITS_MIDDLE = (CLIPBOARD_LEFT + 14, STRIP_Y)


class DropTarget(Peer):
    """A window of another program that writes down what is dropped on it."""

    def __init__(self, desktop, peers):
        self.came = desktop.home / "dropped"
        super().__init__(desktop, peers, "DropTarget", 1200, 600, self.came)
        self.place = (1300, 720)

    def wait_for(self, what, expected):
        came = lambda: self.came.read_text() if self.came.exists() else ""
        try:
            wait_until("", lambda: came() == expected)
        except StageMissed:
            raise StageMissed(f"{what} dropped on another program, which has {came()!r}") from None
        self.came.unlink()


class Handler:
    """A program that the desktop has chosen for links and pictures; it writes down what it is given."""

    def __init__(self, desktop):
        self.given = desktop.home / "given"
        script = desktop.home / "handler"
        script.write_text(f"#!/bin/sh\nprintf '%s\\n' \"$1\" >> {self.given}\n")
        script.chmod(0o755)
        applications = desktop.home / "data" / "applications"
        applications.mkdir(parents=True, exist_ok=True)
        (applications / "handler.desktop").write_text(
            f"[Desktop Entry]\nType=Application\nName=Handler\nExec={script} %u\n"
            "MimeType=x-scheme-handler/https;image/png;\n")
        (desktop.home / "config" / "mimeapps.list").write_text(
            "[Default Applications]\nx-scheme-handler/https=handler.desktop\nimage/png=handler.desktop\n")

    def wait_for(self, what, expected):
        wait_until(f"{what} opened by the desktop's handler",
                   lambda: self.given.exists() and expected in self.given.read_text().splitlines())


class Handoff(Flow):
    """Plays the stages in order over a history that it fills itself."""

    LINK = "https://www.debian.org/releases/stable/"

    def fills(self):
        desktop = self.desktop
        self.picture = desktop.home / "Sunset.png"
        self.picture.write_bytes(gradient_png(1600, 1000, (246, 160, 77), (91, 63, 168)))
        desktop.copy_texts("A text to carry")
        desktop.copy(self.picture.as_uri() + "\r\n", "text/uri-list")
        desktop.wait_for_entry("an image", lambda item: item["kind"] == "image")
        desktop.copy_texts(self.LINK)
        self.wait_notice_gone()

    def double_clicks(self, handler):
        """The link opens in the program that the desktop has for it; the picture in its own."""
        desktop = self.desktop
        self.open_by_pointer()
        desktop.move(*self.row(0))
        desktop.xdotool("click", "--repeat", 2, "--delay", 60, 1)
        handler.wait_for("the link", self.LINK)
        if desktop.pasted().decode() != self.LINK:
            raise StageMissed("the double-clicked link on the clipboard")
        self.show("link-opened")
        desktop.move(*FIRST_THUMB)
        desktop.xdotool("click", "--repeat", 2, "--delay", 60, 1)
        wait_until("the picture opened by the desktop's handler",
                   lambda: any(str(self.picture) in line.replace("file://", "")
                               for line in handler.given.read_text().splitlines()))

    def drags_out(self, target):
        """A text, a link and an image, each into another program's window."""
        desktop = self.desktop
        for what, place, expected in (
                ("the text", self.row(1), "copy\nA text to carry"),
                ("the link", self.row(0), f"copy\n{self.LINK}\n{self.LINK}"),
                ("the image", FIRST_THUMB, f"copy\n{self.picture.as_uri()}\n{self.picture.as_uri()}")):
            self.open_by_pointer()
            desktop.drag(place, target.place)
            if not self.is_open():
                raise StageMissed("the surface open while the button is down")
            self.show("dragged-" + what.split()[-1])
            desktop.release()
            target.wait_for(what, expected)
            self.wait_closed()
        if not self.picture.exists():
            raise StageMissed("the dragged picture where it was")

    def previews(self):
        """A press that lasts shows the image large; moving on from there takes it out."""
        desktop = self.desktop
        self.open_by_pointer()
        desktop.move(*FIRST_THUMB)
        desktop.press()
        wait_until("the image large", self._is_large)
        time.sleep(0.4)
        self.show("preview")
        # As a hand trembles.
        desktop.xdotool("mousemove_relative", 1, 0)
        desktop.release()
        wait_until("the preview closed", lambda: not self._is_large())
        wait_until("the buttons of the image under the pointer", lambda: max(desktop.pixel(*BESIDE_ITS_MIDDLE)) < 120)
        self.leave()
        self.open_by_key()
        desktop.key("Right")
        desktop.xdotool("keydown", "space")
        wait_until("the image large from the keyboard", self._is_large)
        desktop.xdotool("keyup", "space")
        wait_until("the preview closed", lambda: not self._is_large())
        self.close_by_key()

    def carries_after_a_preview(self, target):
        desktop = self.desktop
        self.open_by_pointer()
        desktop.move(*FIRST_THUMB)
        desktop.press()
        wait_until("the image large", self._is_large)
        desktop.drag_on(FIRST_THUMB, target.place)
        desktop.release()
        target.wait_for("the image", f"copy\n{self.picture.as_uri()}\n{self.picture.as_uri()}")
        self.wait_closed()

    def _is_large(self):
        # Below the surface, inside the preview, where only the desktop or the picture can be.
        red, _, blue = self.desktop.pixel(self._below[0], self._below[1])
        return red > 60 and blue > 60 and (red, blue) != self._desktop_there

    _below = (756, 400)

    def looks_at_the_desktop(self):
        red, _, blue = self.desktop.pixel(*self._below)
        self._desktop_there = (red, blue)


def play(desktop, peers):
    flow = Handoff(desktop, reached)
    handler = Handler(desktop)
    flow.looks_at_the_desktop()
    desktop.start()
    flow.fills()
    flow.double_clicks(handler)
    flow.leave()
    target = DropTarget(desktop, peers)
    flow.drags_out(target)
    flow.previews()
    flow.carries_after_a_preview(target)
    target.close()


if __name__ == "__main__":
    sys.exit(run_test(sys.argv[1], lambda desktop: play(desktop, sys.argv[2]), settings={"language": "en"}))
