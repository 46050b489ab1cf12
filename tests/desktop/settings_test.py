"""settings_test.py PROGRAM PEERS: every setting used with the pointer, and what comes of it, on a private desktop."""

import pathlib
import sys
import time

from desktop import gradient_png, NOTCH_LEFT, reached, run_test, StageMissed, wait_until
from flow import Flow, SURFACE_LEFT

GEAR = (SURFACE_LEFT + 383, 16)
# The switches, one a row, from the top of the page.
SWITCH_X = SURFACE_LEFT + 417
FIRST_SWITCH_Y = 76
SWITCH_HEIGHT = 22
SWITCHES = ("launchAtLogin", "peekOnClipboard", "peekOnTrackChange", "watchScreenshots", "pasteOnClick",
            "hotKeyEnabled", "showCalendar")
# What stands at the end of the page, when that is in view.
PICKER_LEFT = SURFACE_LEFT + 271
HISTORY_Y = 139
LANGUAGE_Y = 165
CLEAR = (SURFACE_LEFT + 50, 189)
WHEEL_UP, WHEEL_DOWN = 4, 5


class SettingsFlow(Flow):
    """What a person does on the page of settings."""

    def opens_settings(self, gear=GEAR):
        self.open_by_pointer()
        self.desktop.click(*gear)
        time.sleep(0.4)

    def switch(self, name):
        self.desktop.click(SWITCH_X, FIRST_SWITCH_Y + SWITCH_HEIGHT * SWITCHES.index(name))

    def scrolls(self, button):
        """To the end of the page on that side."""
        self.desktop.move(SURFACE_LEFT + 150, 150)
        for _ in range(10):
            self.desktop.xdotool("click", button)
        time.sleep(0.5)

    def setting(self, name):
        lines = (self.desktop.home / "config" / "Nimbarrow.conf").read_text().splitlines()
        return next((line.split("=", 1)[1] for line in lines if line.startswith(name + "=")), None)

    def wait_for_setting(self, name, value):
        wait_until(f"{name} to be {value}", lambda: self.setting(name) == value, 5)

    def switches(self):
        """Each off and on again, seen in what the program keeps and does."""
        desktop = self.desktop
        autostart = desktop.home / "config" / "autostart"
        self.opens_settings()
        self.show("settings")
        for name, first in (("peekOnTrackChange", "false"), ("watchScreenshots", "false"), ("pasteOnClick", "true"),
                            ("hotKeyEnabled", "false"), ("peekOnClipboard", "false")):
            self.switch(name)
            self.wait_for_setting(name, first)
        self.switch("launchAtLogin")
        entry = wait_until("the program among those that start at login", lambda: list(autostart.glob("*.desktop")), 5)
        self.leave()
        # Taken away elsewhere, it is off here too, and the switch makes a new one.
        entry[0].unlink()
        self.opens_settings()
        self.switch("launchAtLogin")
        wait_until("an entry for the next login", entry[0].exists, 5)
        self.leave()
        desktop.key("super+shift+v")
        time.sleep(0.5)
        if self.is_open():
            raise StageMissed("a hot key that is off")
        self.copies_without_notice()
        self.takes_no_screenshot()
        self.opens_settings()
        for name in ("hotKeyEnabled", "watchScreenshots", "peekOnClipboard"):
            self.switch(name)
            self.wait_for_setting(name, "true")
        self.leave()
        self.open_by_key()
        self.close_by_key()

    def copies_without_notice(self):
        self.desktop.copy_texts("Nobody is told")
        if self.desktop.is_black(NOTCH_LEFT - 40, 4):
            raise StageMissed("no notice where none is wanted")

    def takes_no_screenshot(self):
        self.write_screenshot("Screenshot From 2026-01-01 10-00-00.png")
        time.sleep(1.5)
        if any(item["isScreenshot"] for item in self.desktop.history()):
            raise StageMissed("no screenshot where none is wanted")

    def write_screenshot(self, name, way="rename"):
        """GNOME's tool writes a hidden file and renames it, KDE's writes the file itself."""
        folder = self.desktop.home / "home" / "Pictures" / "Screenshots"
        data = gradient_png(800, 500, (40, 90, 160), (91, 63, 168))
        if way == "rename":
            hidden = folder / ".written.png"
            hidden.write_bytes(data)
            hidden.rename(folder / name)
            return
        with open(folder / name, "wb") as file:
            for start in range(0, len(data), 1000):
                file.write(data[start:start + 1000])
                file.flush()
                time.sleep(0.02)

    def takes_screenshots(self):
        for name, way in (("Screenshot From 2026-11-21 02-56-09.png", "rename"),
                          ("Screenshot_20261121_031042.png", "slowly")):
            self.write_screenshot(name, way)
            self.wait_for_notice("a screenshot")
            self.show("screenshot-" + way)
            item = self.desktop.wait_for_entry("a screenshot", lambda item: item["isScreenshot"]
                                               and pathlib.Path(item["imagePath"]).name == name)
            if item["sourceApp"] != "Screenshot":
                raise StageMissed("a screenshot by its name")
            self.wait_notice_gone()

    def pickers(self):
        """The history's size and the language, which changes the whole surface at once."""
        desktop = self.desktop
        self.opens_settings()
        self.scrolls(WHEEL_DOWN)
        self.show("settings-end")
        desktop.click(PICKER_LEFT + 20, HISTORY_Y)
        self.wait_for_setting("historyLimit", "50")
        desktop.click(PICKER_LEFT + 140, HISTORY_Y)
        self.wait_for_setting("historyLimit", "200")
        english = desktop.picture(desktop.home / "english.png").read_bytes()
        for x, language in ((20, "system"), (85, "uk")):
            desktop.click(PICKER_LEFT + x, LANGUAGE_Y)
            self.wait_for_setting("language", language)
            time.sleep(0.3)
        self.show("settings-in-ukrainian")
        if desktop.picture(desktop.home / "ukrainian.png").read_bytes() == english:
            raise StageMissed("the surface in another language")
        desktop.click(PICKER_LEFT + 140, LANGUAGE_Y)
        self.wait_for_setting("language", "en")

    def clears(self):
        """From the page of settings; the pictures of the user stay where they are."""
        desktop = self.desktop
        stored = desktop.history_folder / "images"
        desktop.copy(gradient_png(60, 40, (1, 2, 3), (4, 5, 6)), "image/png")
        wait_until("a stored image", lambda: len(list(stored.iterdir())) == 1)
        desktop.click(*CLEAR)
        wait_until("an empty history", lambda: desktop.history() == [])
        wait_until("no stored image", lambda: not list(stored.iterdir()))
        if len(list((desktop.home / "home" / "Pictures" / "Screenshots").iterdir())) != 3:
            raise StageMissed("the screenshots in the user's own folder")
        self.scrolls(WHEEL_UP)
        self.switch("showCalendar")
        self.wait_for_setting("showCalendar", "false")
        wait_until("a lower surface without the calendar",
                   lambda: not desktop.is_black(SURFACE_LEFT + 230, 250))
        self.show("without-calendar")
        self.leave()


def play(desktop):
    (desktop.home / "home" / "Pictures" / "Screenshots").mkdir(parents=True)
    flow = SettingsFlow(desktop, reached)
    desktop.start()
    flow.switches()
    flow.takes_screenshots()
    flow.pickers()
    flow.clears()


if __name__ == "__main__":
    sys.exit(run_test(sys.argv[1], play, settings={"language": "en"}))
