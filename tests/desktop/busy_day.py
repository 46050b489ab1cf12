"""What a person does in a day, again and again: every act leaves the desktop as it found it."""

import json
import os
import signal
import socket
import time

from day_test import calendar, DayFlow, event, STRIP
from desktop import gradient_png, NOTCH_MIDDLE, StageMissed
from flow import BELOW_THE_SURFACE, CLIPBOARD_LEFT, FIRST_ROW_Y, STRIP_Y
from player_test import Player
from settings_test import GEAR, LANGUAGE_Y, PICKER_LEFT, SettingsFlow, WHEEL_DOWN

LIMIT = 200
MOST_PINS = 6
MOST_SCREENSHOTS = 10
MOST_EVENTS = 40
# The buttons of a row under the pointer, and the owl with its longest choice below it.
COPY_X, DELETE_X, PIN_X = 868, 916, 940
OWL, NO_END = (941, 20), (924, 133)
# The time that the owl is still awake stands between the owl and the gear.
GEAR_BESIDE_NO_END = (891, 16)
WORDS = "rain harbour paper lantern дощ вечір стежка поле quiet copper window river ліхтар гавань".split()


class Jukebox(Player):
    """A player that goes through its short tracks for ever, told what to do through its own socket."""

    TRACKS = (("First Song", "Anna", "red", 12), ("Second Song", "Bohdan", "blue", 8),
              ("Third Song", "Olena", "green", 20), ("Fourth Song", "Taras", "yellow", 5))

    def __init__(self, desktop):
        self.socket = desktop.home / "mpv"
        super().__init__(desktop, self.TRACKS, f"--input-ipc-server={self.socket}", "--loop-playlist=inf")

    def tell(self, *command):
        with socket.socket(socket.AF_UNIX) as connection:
            connection.connect(str(self.socket))
            connection.sendall(json.dumps({"command": command}).encode() + b"\n")


class BusyDay(SettingsFlow):
    """Acts by chance, the same ones for the same `chance`."""

    def __init__(self, desktop, services, chance):
        super().__init__(desktop)
        self.services = services
        self.chance = chance
        self.count = 0
        self.awake = False
        self.documents = [desktop.home / f"Document {number}.odt" for number in range(12)]
        for document in self.documents:
            document.write_bytes(b"words")
        self.picture = gradient_png(640, 400, (246, 160, 77), (91, 63, 168))
        self.calendars = [desktop.history_folder / "calendars" / name for name in ("Home", "Work")]
        for folder in self.calendars:
            folder.mkdir(parents=True)
        self.shots = desktop.home / "home" / "Pictures" / "Screenshots"
        self.shots.mkdir(parents=True)
        self.jukebox = Jukebox(desktop)

    ACTS = {
        "copies_texts": 6, "copies_again": 3, "copies_links": 2, "copies_files": 2, "copies_a_picture": 4,
        "copies_much": 1, "copies_from_a_frozen_program": 1, "copies_a_secret": 1, "hovers_past": 2, "scrolls_the_lists": 3,
        "uses_the_keyboard": 4, "uses_a_row": 4, "looks_closely": 2, "changes_settings": 2, "changes_the_calendar": 3,
        "looks_at_the_day": 2, "plays": 4, "restarts_the_player": 1, "keeps_awake": 1, "takes_screenshots": 3,
    }

    def act(self):
        """One act by chance; its name."""
        name = self.chance.choices(list(self.ACTS), list(self.ACTS.values()))[0]
        getattr(self, name)()
        return name

    def pause(self, least=0.02, most=0.15):
        time.sleep(self.chance.uniform(least, most))

    # Copies.

    def text(self, words=None):
        self.count += 1
        words = words or self.chance.choice((2, 8, 30, 300))
        return f"{self.count} " + " ".join(self.chance.choices(WORDS, k=words))

    def color(self):
        return tuple(self.chance.randrange(256) for _ in range(3))

    def copies_texts(self):
        for _ in range(self.chance.randint(3, 20)):
            self.desktop.copy(self.text())
            self.pause()

    def copies_again(self):
        texts = [item["text"] for item in self.desktop.history() if item["kind"] == "text"]
        for text in self.chance.choices(texts, k=5):
            self.desktop.copy(text)
            self.pause()

    def copies_links(self):
        for _ in range(3):
            self.count += 1
            self.desktop.copy(f"https://www.debian.org/{self.count}/")
            self.pause()

    def copies_files(self):
        files = self.chance.sample(self.documents, self.chance.randint(1, 4))
        self.desktop.copy("".join(file.as_uri() + "\r\n" for file in files), "text/uri-list")
        self.pause(0.1, 0.3)

    def copies_a_picture(self):
        """A new one, the same one again, or a very large one."""
        kind = self.chance.random()
        if kind > 0.25:
            size = (6000, 4000) if kind > 0.92 else (self.chance.randint(20, 1920), self.chance.randint(20, 1080))
            self.picture = gradient_png(*size, self.color(), self.color())
        self.desktop.copy(self.picture, "image/png")
        self.pause(0.1, 0.5)

    def copies_much(self):
        self.desktop.copy(self.text() + " long" * (self.chance.choice((1, 5, 20)) * 1_000_000))
        self.pause(0.1, 1)

    def copies_from_a_frozen_program(self):
        owner = self.desktop.spawn(["xclip", "-quiet", "-selection", "clipboard", "-in", "/etc/hostname"])
        time.sleep(0.1)
        os.kill(owner.pid, signal.SIGSTOP)
        time.sleep(self.chance.uniform(0.1, 2))
        os.kill(owner.pid, signal.SIGKILL)
        owner.wait()
        self.desktop.processes.remove(owner)

    def copies_a_secret(self):
        self.desktop.copy("hunter2", "x-kde-passwordManagerHint")
        self.pause()

    # The surface.

    def hovers_past(self):
        for _ in range(self.chance.randint(2, 6)):
            self.desktop.xdotool("mousemove", NOTCH_MIDDLE, 10)
            self.pause(0.02, 0.4)
            self.desktop.xdotool("mousemove", *BELOW_THE_SURFACE)
            self.pause(0.02, 0.4)
        self.wait_closed()

    def scrolls_the_lists(self):
        self.open_by_pointer()
        for place in ((CLIPBOARD_LEFT + 90, FIRST_ROW_Y + 60), (CLIPBOARD_LEFT + 90, STRIP_Y)):
            self.desktop.move(*place)
            for button in (5, 4):
                self.desktop.xdotool("click", "--repeat", self.chance.randint(5, 40), "--delay", 15, button)
        self.leave()

    def uses_the_keyboard(self):
        desktop = self.desktop
        self.open_by_key()
        desktop.key(*self.chance.choices(("Down", "Up", "Left", "Right"), (6, 2, 1, 1), k=self.chance.randint(1, 20)))
        end = self.chance.choice(("Return", "Escape", "Delete", "space"))
        if end == "space":
            desktop.xdotool("keydown", "space")
            self.pause(0.2, 0.8)
            desktop.xdotool("keyup", "space")
        else:
            desktop.key(end)
        if end in ("Delete", "space"):
            desktop.key("Escape")
        self.wait_closed()

    def uses_a_row(self):
        """Pins it or lets it go, deletes it, copies it by its button or by a click."""
        pinned = sum(item["pinned"] for item in self.desktop.history())
        self.open_by_pointer()
        x, y = self.row(0 if pinned >= MOST_PINS else self.chance.randrange(3))
        self.desktop.move(x, y)
        self.pause(0.1, 0.3)
        # The pinned rows come first, and they are not to become more and more.
        x = PIN_X if pinned >= MOST_PINS else self.chance.choice((PIN_X, DELETE_X, COPY_X, x))
        self.desktop.click(x, y)
        self.pause(0.1, 0.3)
        self.leave()

    def looks_closely(self):
        self.open_by_pointer()
        self.desktop.move(CLIPBOARD_LEFT + 30 + 66 * self.chance.randrange(3), STRIP_Y)
        self.desktop.press()
        self.pause(0.4, 1)
        self.desktop.release()
        self.leave()

    def changes_settings(self):
        self.opens_settings(GEAR_BESIDE_NO_END if self.awake else GEAR)
        for _ in range(2):
            before = self.setting("peekOnTrackChange") or "true"
            self.switch("peekOnTrackChange")
            self.wait_for_setting("peekOnTrackChange", "false" if before == "true" else "true")
        self.scrolls(WHEEL_DOWN)
        for x, language in ((85, "uk"), (140, "en")):
            self.desktop.click(PICKER_LEFT + x, LANGUAGE_Y)
            self.wait_for_setting("language", language)
            self.pause(0.1, 0.4)
        self.leave()

    def keeps_awake(self):
        """Until it is pressed once more."""
        self.open_by_pointer()
        self.press_owl()
        self.leave()

    def press_owl(self):
        self.desktop.click(*OWL)
        self.pause(0.3, 0.5)
        if not self.awake:
            self.desktop.click(*NO_END)
        self.awake = not self.awake
        self.services.wait_held("after the owl was pressed", 1 if self.awake else 0)

    # What comes from elsewhere.

    def changes_the_calendar(self):
        """New events, changed ones and calendars that lose some."""
        day = DayFlow(self.desktop)
        for _ in range(self.chance.randint(1, 5)):
            number = self.chance.randrange(MOST_EVENTS)
            file = self.calendars[number % 2] / f"{number}.ics"
            if self.chance.random() < 0.2:
                file.unlink(missing_ok=True)
                continue
            hour = self.chance.randrange(23)
            more = ["RRULE:FREQ=DAILY"] if self.chance.random() < 0.2 else []
            start, end = day.at(hour), day.at(hour, self.chance.choice((15, 30, 55)))
            file.write_text(calendar([event(str(number), self.text(2), start, end, *more)]), newline="")
            self.pause()

    def looks_at_the_day(self):
        self.open_by_pointer()
        self.desktop.move(*STRIP)
        self.pause(0.5, 1)
        self.desktop.xdotool("click", "--repeat", self.chance.randint(1, 10), "--delay", 15, self.chance.choice((4, 5)))
        self.changes_the_calendar()
        self.pause(0.2, 0.5)
        self.leave()

    def plays(self):
        for _ in range(self.chance.randint(1, 4)):
            self.jukebox.tell(*self.chance.choice(
                (("cycle", "pause"), ("playlist-next",), ("seek", 3), ("playlist-prev",))))
            self.pause(0.1, 1)
        if self.chance.random() < 0.5:
            self.open_by_pointer()
            self.pause(0.5, 3)
            self.leave()

    def restarts_the_player(self):
        self.jukebox.quit()
        self.desktop.processes.remove(self.jukebox.process)
        self.pause(0.1, 1)
        self.jukebox.start()

    def takes_screenshots(self):
        for _ in range(self.chance.randint(1, 3)):
            self.count += 1
            taken = f"{self.count // 3600 % 24:02}-{self.count // 60 % 60:02}-{self.count % 60:02}"
            self.write_screenshot(f"Screenshot From 2026-11-21 {taken}.png", self.chance.choice(("rename", "slowly")))
            self.pause(0.1, 0.5)
        taken = sorted(self.shots.iterdir(), key=lambda path: path.stat().st_mtime)
        for old in taken[:-MOST_SCREENSHOTS]:
            old.unlink()

    # The end of a round.

    def comes_to_rest(self):
        """Nothing plays, nothing is kept awake, the history is full and has what was copied last."""
        self.jukebox.tell("set_property", "pause", True)
        if self.awake:
            self.keeps_awake()
        self.desktop.move(*BELOW_THE_SURFACE)
        self.fill()
        last = self.text(3)
        self.desktop.copy(last)
        self.desktop.wait_for_text(last, 30)
        self.wait_notice_gone()

    def fill(self):
        missing = lambda: LIMIT - sum(not item["pinned"] for item in self.desktop.history())
        for _ in range(5):
            for _ in range(missing()):
                self.desktop.copy(self.text())
                time.sleep(0.05)
            # The index is written half a second after the last change.
            time.sleep(1)
            if missing() <= 0:
                return
        raise StageMissed("a full history")
