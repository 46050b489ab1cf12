"""notch_test.py PROGRAM PEERS: somebody whose screen has no notch, on private desktops: asked once by a real notification
service, told on the terminal where there is none, and served by hand."""

import json
import subprocess
import sys
import time

from desktop import Desktop, NOTCH_MIDDLE, reached, run_test, StageMissed, wait_until, WIDTH

HINT = "nimbarrow --notch 200x32@screen"


class NotchlessDesktop(Desktop):
    def __init__(self, program, language="en", notifications=True, **options):
        # No service but the one that is started here.
        super().__init__(program, settings={"language": language}, services=[], **options)
        self.description.unlink()
        self.notifications = notifications
        self.usual_log += ["nimbarrow --notch", "no display has a notch"]
        # What dunst asks which of the answers it is, and what it is told.
        (self.home / "menu").write_text(f"#!/bin/sh\ngrep -F \"$(cat {self.home}/choice)\"\n")
        (self.home / "menu").chmod(0o700)
        (self.home / "dunstrc").write_text(f"[global]\ndmenu = {self.home}/menu\nwidth = (0, 460)\nfont = DejaVu Sans 11\n")

    @property
    def description(self):
        return self.home / "data" / "Nimbarrow" / "display-panels" / "screen.json"

    def __enter__(self):
        super().__enter__()
        if self.notifications:
            self.spawn(["dunst", "-conf", str(self.home / "dunstrc")])
            wait_until("a notification service", lambda: self.dunst("count", check=False) is not None)
        return self

    def dunst(self, *words, check=True):
        run = subprocess.run(["dunstctl", *words], env=self.environment, capture_output=True, text=True, timeout=20)
        if run.returncode and check:
            raise StageMissed(f"dunstctl {words}: {run.stderr}")
        return None if run.returncode else run.stdout

    def is_asked(self):
        return self.dunst("count", "displayed").strip() == "1"

    def wait_asked(self):
        wait_until("the question", self.is_asked)

    def wait_not_asked(self):
        wait_until("no question", lambda: not self.is_asked())

    def choose(self, answer):
        (self.home / "choice").write_text("#" + answer)
        self.dunst("context")

    def is_there(self):
        return self.is_black(NOTCH_MIDDLE, 16) and self.is_black(NOTCH_MIDDLE + 90, 28)

    def wait_there(self):
        wait_until("the panel", self.is_there)

    def wait_away(self):
        wait_until("no panel", lambda: not self.is_black(NOTCH_MIDDLE, 16))

    def start_notchless(self):
        self.start_unseen()
        wait_until("the program", lambda: "adapter ready" in self.log())

    def restart(self):
        self.stop()
        (self.home / "nimbarrow.log").unlink()
        self.start_notchless()

    def stays_unasked(self, what):
        """For as long as the question has taken before."""
        self.restart()
        time.sleep(1.5)
        if self.is_asked():
            raise StageMissed(f"no second question after {what}")


def by_hand(desktop):
    desktop.start_notchless()
    wait_until("a hint on the terminal", lambda: HINT in desktop.log())
    desktop.wait_away()
    told, _ = desktop.run(*HINT.split()[1:])
    if str(desktop.description) not in told or "200 points wide" not in told:
        raise StageMissed(f"what was written and where, not {told}")
    desktop.wait_there()
    box = f"M {WIDTH // 2 - 100},0 H {WIDTH // 2 + 100} V 32 H {WIDTH // 2 - 100} Z"
    if json.loads(desktop.description.read_text())["cutouts"][0]["path"] != box:
        raise StageMissed(f"a box in the middle, not\n{desktop.description.read_text()}")
    desktop.run("--notch", "none")
    desktop.wait_away()
    for value, status, words in (("wide", 2, "200x32"), ("0x32", 2, "200x32"), ("200x32@", 2, "200x32"),
                                 ("9999x32", 1, "fit"), ("200x491", 1, "fit"), ("200x32@HDMI-9", 1, "only screen")):
        if words not in desktop.run("--notch", value, status=status)[1]:
            raise StageMissed(f"a word about {value}")
    desktop.restart()
    desktop.wait_away()
    desktop.run("--notch", "300x40")
    desktop.wait_there()
    desktop.run("--notch", "none@screen")
    desktop.wait_away()


def shown(desktop):
    desktop.start_notchless()
    desktop.wait_asked()
    reached("a question")
    desktop.wait_away()
    desktop.choose("Show ")
    desktop.wait_there()
    desktop.wait_not_asked()
    if json.loads(desktop.description.read_text())["cutouts"][0]["path"] != "M 1312,0 H 1712 V 64 H 1312 Z":
        raise StageMissed(f"a box in the panel's pixels, not\n{desktop.description.read_text()}")
    desktop.stays_unasked("an answer")
    desktop.wait_there()


def refused(desktop):
    desktop.start_notchless()
    desktop.wait_asked()
    # It goes with the program that asks, and comes with it.
    desktop.stop()
    desktop.wait_not_asked()
    desktop.start_notchless()
    desktop.wait_asked()
    desktop.choose("Do not show ")
    desktop.wait_not_asked()
    desktop.stays_unasked("a refusal")
    if desktop.description.exists() or HINT not in desktop.log():
        raise StageMissed("a hint alone after a refusal")
    # Whoever starts it again wants the panel; and may declare it by hand meanwhile.
    desktop.run()
    desktop.wait_asked()
    desktop.run("--notch", "200x32")
    desktop.wait_there()
    desktop.wait_not_asked()


def dismissed(desktop):
    desktop.start_notchless()
    desktop.wait_asked()
    desktop.dunst("close-all")
    desktop.wait_not_asked()
    desktop.stays_unasked("being sent away")
    desktop.wait_away()


def main(program, _peers):
    for stage, options in ((by_hand, {"notifications": False}), (shown, {"scale": 2}), (refused, {}),
                           (dismissed, {"language": "uk"})):
        if run_test(program, stage, kind=NotchlessDesktop, **options):
            return 1
        reached(stage.__name__)
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
