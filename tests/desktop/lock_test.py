"""lock_test.py PROGRAM PEERS: nothing of the program is to be seen above a locked screen, whatever happens meanwhile; seen
under real screen lockers, with and without a compositing manager."""

import os
import sys
import time

from desktop import reached, run_test, StageMissed, wait_until, NOTCH_MIDDLE
from flow import BELOW_THE_SURFACE, Flow

# How each is started, and its colour where it is always the same: above the compositing manager it depends on who draws
# first, and may be its complaint about that, black words on white.
LOCKERS = {
    "i3lock": (["i3lock", "--nofork", "--color=306030"], (0x30, 0x60, 0x30)),
    "xsecurelock": (["env", "XSECURELOCK_NO_COMPOSITE=1", "xsecurelock"], (0, 0, 0)),
    "xsecurelock above the compositing manager": (["xsecurelock"], None),
}
# Where a notice and the grown surface would be.
TOP = (500, 1, 500, 330)


class LockFlow(Flow):
    def __init__(self, desktop, locker, peers):
        super().__init__(desktop, reached)
        self.name = locker
        self.other_program = os.path.join(os.path.abspath(peers), "DragSource")
        self.command, self.colour = LOCKERS[locker]
        self.locker = None

    def locks(self, stage):
        self.locker = self.desktop.spawn(self.command)
        wait_until(f"{self.name} with nothing above it, {stage}", self.is_locked, 40)

    def is_locked(self):
        # A locker gives up where another program holds the pointer or the keyboard just then.
        if self.locker.poll() is not None:
            self.locker = self.desktop.spawn(self.command)
        return self.is_covered()

    def is_covered(self):
        left, top, width, height = TOP
        colours = self.desktop.call(["import", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}",
                                     "-format", "%k", "info:-"])
        if colours.strip() == b"1":
            return self.colour in (None, self.desktop.pixel(left, top))
        # The panel is black all over the notch.
        return self.colour is None and self.desktop.brightest(NOTCH_MIDDLE, 4, 28) > 8

    def stays_covered(self, what):
        """For as long as a notice or an opening would take to be seen."""
        for _ in range(5):
            if not self.is_covered():
                raise StageMissed(f"nothing above {self.name} after {what}")
            time.sleep(0.1)

    def unlocks(self):
        """As whoever has the password, which nobody has here."""
        self.locker.terminate()
        self.locker.wait(10)
        self.desktop.move(*BELOW_THE_SURFACE)
        wait_until("the notch after the screen was unlocked", lambda: not self.is_covered() and not self.is_open()
                   and self.desktop.is_black(NOTCH_MIDDLE, 16))

    def stays_unseen(self):
        desktop = self.desktop
        desktop.start()
        self.locks("over the notch")
        desktop.copy("copied while locked")
        self.stays_covered("a copy")
        desktop.wait_for_text("copied while locked")
        # Another program opens a window and is brought to the front below the locker.
        window = desktop.spawn([self.other_program, "text", "/etc/hostname"])
        self.stays_covered("another program")
        window.terminate()
        self.stays_covered("its end")
        desktop.move(NOTCH_MIDDLE, 10)
        self.stays_covered("the pointer")
        desktop.key("super+shift+v")
        self.stays_covered("the hot key")
        self.unlocks()

    def drops_what_it_shows(self):
        desktop = self.desktop
        self.open_by_pointer()
        self.locks("over the surface")
        self.stays_covered("the surface")
        self.unlocks()
        desktop.copy("copied before the lock")
        self.wait_for_notice("a copy")
        self.locks("over a notice")
        self.unlocks()
        self.open_by_key()
        self.locks("in keyboard mode")

    def starts_unseen(self):
        desktop = self.desktop
        desktop.stop()
        desktop.start_unseen()
        self.stays_covered("the start of the program")
        self.unlocks()
        self.open_by_pointer()
        self.leave()


def play(desktop, locker, peers):
    reached(f"{locker}, {'with' if desktop.compositor else 'without'} a compositing manager")
    flow = LockFlow(desktop, locker, peers)
    flow.stays_unseen()
    if locker == "i3lock":
        flow.drops_what_it_shows()
        flow.starts_unseen()


def main(program, peers):
    for locker in LOCKERS:
        if run_test(program, lambda desktop: play(desktop, locker, peers), compositor=locker != "xsecurelock",
                    settings={"language": "en"}):
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
