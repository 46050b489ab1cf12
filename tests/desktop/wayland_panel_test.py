"""wayland_panel_test.py PROGRAM PEERS [COMPOSITOR...]: the panel on real compositors without an X server: over everything, out of the way,
and never in anybody's way to the keyboard."""

import sys
import time

from desktop import reached, run_test, StageMissed, wait_until
from flow import Surface
from wayland import has_output_settings, scales, WaylandDesktop


class PanelFlow(Surface):
    def is_at_rest(self):
        return self.desktop.is_black(int(self.middle), int(self.notch_height / 2)) and not self.desktop.is_black(
            int(self.middle), int(self.notch_height) + 4)

    def starts(self, **environment):
        self.desktop.start_unseen(**environment)
        wait_until("the panel over the notch", lambda: self.desktop._still_runs() and self.is_at_rest())

    def hovers(self):
        """In, out, and in again."""
        for _ in range(2):
            self.open_by_pointer()
            # Inside it stays.
            self.desktop.move(self.middle + 100, 150)
            time.sleep(0.5)
            if not self.is_open():
                raise StageMissed("a surface that stays open below the pointer")
            self.leave()
        reached("hover")

    def stays_closed(self):
        super().stays_closed()
        reached("a pointer at rest")

    def opens_at_a_leap(self):
        """Of the pointer into the notch, where it rests while the surface still shrinks."""
        self.open_by_key()
        self.toggles()
        wait_until("a surface that shrinks", lambda: not self.is_open())
        self.desktop.leap(self.middle, self.notch_height / 2)
        self.wait_open()
        self.leave()
        reached("a leap into the notch")

    def toggles(self):
        """As the desktop does that has a key for it."""
        self.desktop.call([self.desktop.program, "--toggle"])

    def open_by_key(self):
        self.toggles()
        self.wait_open()

    def close_by_key(self):
        self.toggles()
        self.wait_closed()

    def leaves_the_keyboard(self, other):
        """Neither the pointer over the surface nor a click on it takes the keyboard from another program."""
        self.open_by_pointer()
        self.desktop.click(self.middle - 80, 150)
        other.types("one")
        self.leave()
        reached("a click that leaves the keyboard")

    def takes_the_keyboard(self, other):
        self.open_by_key()
        self.desktop.type("lost")
        self.desktop.key("Escape")
        self.wait_closed()
        other.types("two")
        if "lost" in other.text():
            raise StageMissed("keys for the panel alone")
        reached("the keyboard, there and back")
        self.open_by_key()
        self.desktop.click(100, 600)
        self.wait_closed()
        other.types("three")
        reached("the keyboard back after a click elsewhere")

    def keeps_to_its_output(self):
        """The output with the notch goes and comes back, first as the only one and then beside another."""
        self.output_goes_and_comes_back()
        # A place is one on all outputs together, so the hands stay where they are from now on.
        self.hovers()
        if self.desktop.compositor_name == "sway":
            self.desktop.swaymsg("create_output")
            self.output_goes_and_comes_back()
        reached("an output gone and back")

    def output_goes_and_comes_back(self):
        self.desktop.switch_output(on=False)
        time.sleep(0.5)
        self.desktop.switch_output(on=True)
        wait_until("the panel on the output that is back", lambda: self.desktop._still_runs() and self.is_at_rest())

    def outlives_nothing(self):
        """The compositor goes: what was copied last is on the disk, and one line says why the program ends."""
        desktop = self.desktop
        text = "copied just before"
        desktop.copy(text)
        wait_until("a notice", lambda: desktop.is_black(int(self.middle) + 150, 4), 8)
        desktop.kill_server()
        status = desktop.nimbarrow.wait(10)
        lines = [line for line in desktop.log().splitlines() if "Wayland" in line]
        if status != 1 or len(lines) != 1:
            raise StageMissed(f"status 1 and one line, not {status} and {lines}")
        desktop.usual_log += lines
        if not any(item.get("text") == text for item in desktop.history()):
            raise StageMissed("the history of before")
        reached("a compositor that is gone")

    def keeps_awake(self):
        """Without a screen saver on the bus the compositor itself is asked, and only while the owl is awake."""
        desktop = self.desktop
        told = desktop.home / "idle"

        def is_idle(patience=15.0):
            told.unlink(missing_ok=True)
            watcher = desktop.spawn(["swayidle", "timeout", "1", f"touch '{told}'"])
            end = time.monotonic() + patience
            while not told.exists() and time.monotonic() < end:
                time.sleep(0.1)
            watcher.terminate()
            watcher.wait()
            return told.exists()

        def opens_and_clicks(*places):
            self.open_by_pointer()
            for place in places:
                desktop.click(*place)
                time.sleep(0.4)
            self.leave()

        owl, hour = (self.middle + 185, 16), (self.middle + 169, 49)
        if not is_idle():
            raise StageMissed("a session that is idle when nobody touches it")
        opens_and_clicks(owl, hour)
        if is_idle(2.5):
            raise StageMissed("a session that is kept awake")
        opens_and_clicks(owl)
        if not is_idle():
            raise StageMissed("a session that is idle again")
        reached("awake")

    def lets_clicks_through(self, other):
        """Beside the notch and below it, where the surface would be if it were open."""
        for place in ((self.middle - 200, 6), (self.middle, 120)):
            other.is_clicked(place)
        reached("clicks beside the notch")


class OtherProgram:
    """Its window is over the whole screen and it writes down keys and clicks."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.typed = desktop.home / "typed"
        self.typed.write_text("")
        before = desktop.pixel(100, 600)
        self.process = desktop.spawn(self.command())
        wait_until("another program's window", lambda: desktop.pixel(100, 600) != before)
        time.sleep(0.5)

    def command(self):
        return [str(self.desktop.peers / "FullScreen"), str(self.typed)]

    def text(self):
        return self.typed.read_text()

    def types(self, text):
        before = len(self.text())
        self.desktop.type(text)
        wait_until(f"{text!r} in the other program", lambda: text in self.text()[before:])

    def is_clicked(self, place):
        before = len(self.text())
        self.desktop.click(*place)
        wait_until(f"a click at {place} in the other program", lambda: "<click>" in self.text()[before:])

    def close(self):
        self.process.terminate()
        self.process.wait()


def play(desktop):
    flow = PanelFlow(desktop)
    flow.starts()
    reached("a start without an X server")
    flow.hovers()
    if desktop.compositor_name != "kwin" and desktop.output_scale == 1:
        flow.keeps_awake()
    # Where nobody else wants the keyboard.
    for _ in range(2):
        flow.opens_at_a_leap()
    # Over the whole screen, and below the panel.
    other = OtherProgram(desktop)
    if desktop.lockers_are_surfaces():
        # There the panel gives way to what fills the screen, so that it gives way to a locker.
        if flow.is_at_rest():
            raise StageMissed("a window that fills the screen above the notch")
        desktop.swaymsg("fullscreen", "disable")
        wait_until("the notch above a window", flow.is_at_rest)
    if not flow.is_at_rest():
        raise StageMissed("the notch above a window that fills the screen")
    flow.hovers()
    flow.leaves_the_keyboard(other)
    flow.takes_the_keyboard(other)
    flow.lets_clicks_through(other)
    flow.stays_closed()
    other.close()
    if desktop.compositor_name != "kwin":
        flow.keeps_to_its_output()
    flow.outlives_nothing()


def play_in_x_server(desktop):
    """Where the program was asked to be an X11 program."""
    flow = PanelFlow(desktop)
    flow.starts(QT_QPA_PLATFORM="xcb")
    flow.hovers()
    reached("a start in the compositor's X server")


def play_outputs(desktop):
    flow = PanelFlow(desktop)
    flow.starts()
    flow.hovers()
    flow.keeps_to_its_output()


def play_locked(desktop):
    """Nothing of the panel is to be seen above a locker, not even when it is asked to open."""
    flow = PanelFlow(desktop)
    flow.starts()
    desktop.copy("not for other eyes")
    colour = desktop.lock()
    wait_until("a locker", lambda: desktop.pixel(100, 600) == colour, 20)
    for _ in range(2):
        time.sleep(0.8)
        if not desktop.is_filled(colour, int(flow.middle) - 220, 0, 440, 330):
            raise StageMissed("a locker above the panel")
        flow.toggles()
    reached("a locked session")


def main(program, peers, *compositors):
    for compositor in compositors or ("sway", "kwin"):
        plays = [(play, {"scale": scale}) for scale in scales(compositor)]
        if compositor == "kwin" and has_output_settings():
            plays.append((play_outputs, {"outputs": 2}))
        plays.append((play_locked, {"locker": True}))
        if compositor == "sway":
            plays.append((play_in_x_server, {"xwayland": True}))
        for part, options in plays:
            reached(f"{part.__name__} on {compositor}, {options}")
            if run_test(program, part, kind=WaylandDesktop, peers=peers, compositor=compositor,
                        settings={"language": "en"}, **options):
                return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
