#!/usr/bin/python3
"""pictures.py PROGRAM PEERS FOLDER [LANGUAGE...]: plays the real program on private desktops and keeps the pictures
that the README and the guide show, and the moving one. All that is in them is made up."""

import datetime
import os
import pathlib
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "tests" / "desktop"))
import desktop as stage
from day_test import calendar, event
from desktop import Desktop, NOTCH_LEFT, NOTCH_MIDDLE, StageMissed, wait_until
from flow import BELOW_THE_SURFACE, DragSource, Flow, SURFACE_LEFT
from player_test import Player
from settings_test import GEAR, WHEEL_DOWN

NO_DATA_SERVER = ("org.a11y.Bus",)
OWL = (SURFACE_LEFT + 415, 16)
VOLUME = (SURFACE_LEFT + 171, 210)
PIN_X = SURFACE_LEFT + 414
SHARE_X = SURFACE_LEFT + 365
# In points of the screen: left, top, width, height.
SURFACE = (SURFACE_LEFT - 40, 0, 540, 350)
FOLDED = (SURFACE_LEFT - 40, 0, 540, 285)
NOTICE = (SURFACE_LEFT - 40, 0, 540, 90)
DAY = (SURFACE_LEFT - 40, 140, 540, 210)
LARGE = (SURFACE_LEFT - 170, 0, 800, 500)
MOVIE = (SURFACE_LEFT - 150, 0, 760, 520)
HOUR_WIDTH = 54
FRAMES_PER_SECOND = 25

TEXTS = {
    "en": {
        "copies": ["Best wishes from all of us at the garden", "Two loaves of rye, a lemon, oat milk",
                   "https://garden.example/tomatoes-on-a-balcony", "Meeting moved to Friday, 14:30"],
        "notice": "Market opens at nine",
        "file": "Harvest plan.ods", "screenshot": "Screenshot From 2026-11-21 10-15-42.png",
        "track": ("Morning over the river", "The Tin Lanterns"), "next": ("Rain on the tram", "The Tin Lanterns"),
        "work": "Work", "home": "Home", "room": "Room by the window", "all day": "Olha's birthday",
        "day": [("home", "Swim", 7, 30, 8, 30), ("work", "Plan", 9, 0, 10, 0),
                ("work", "Review", 11, 0, 12, 30), ("home", "Phone", 11, 30, 12, 30),
                ("home", "Lunch", 13, 0, 14, 0), ("work", "Quiet hours", 14, 30, 16, 30)],
        "letter name": "letter.txt", "letter": "Dear Marta, here is the page about the tomatoes:\n",
        "subject": "Picnic on Saturday",
    },
    "uk": {
        "copies": ["З найкращими побажаннями від усього саду", "Два житніх, лимон, вівсяне молоко",
                   "https://garden.example/tomaty-na-balkoni", "Зустріч переносимо на п’ятницю, 14:30"],
        "notice": "Ринок відкриють о 9",
        "file": "План урожаю.ods", "screenshot": "Знімок екрана з 2026-11-21 10-15-42.png",
        "track": ("Ранок над річкою", "Бляшані ліхтарі"), "next": ("Дощ на трамвай", "Бляшані ліхтарі"),
        "work": "Робота", "home": "Дім", "room": "Кімната з вікном", "all day": "День народження Олі",
        "day": [("home", "Басейн", 7, 30, 8, 45), ("work", "План", 9, 0, 10, 0),
                ("work", "Огляд", 11, 0, 12, 30), ("home", "Дзвінок", 11, 30, 12, 45),
                ("home", "Обід", 13, 0, 14, 0), ("work", "Тихі години", 14, 30, 16, 30)],
        "letter name": "лист.txt", "letter": "Люба Марто, ось та сторінка про томати:\n",
        "subject": "Пікнік у суботу",
    },
}
COLORS = {"work": "#5b8def", "home": "#e8a04c"}
# Sky above, sky below, hills behind, hills in front, sun.
LANDSCAPES = {
    "meadow": ("#7fc4e8", "#dff1e4", "#7fb069", "#4c8a55", "#fff4c2"),
    "dusk": ("#4b3f8f", "#f2a65a", "#6d3f6b", "#3b2647", "#ffe0a3"),
    "sea": ("#f7c59f", "#f9e7d0", "#3f88a5", "#1f5a78", "#ff8a5b"),
}


def landscape(desktop, name, path):
    top, bottom, behind, front, sun = LANDSCAPES[name]
    desktop.call(["convert", "-size", "900x600", f"gradient:{top}-{bottom}",
                  "-fill", sun, "-draw", "circle 640,190 700,190",
                  "-fill", behind, "-draw", "path 'M 0,430 C 180,270 330,300 470,400 S 760,330 900,390 V 600 H 0 Z'",
                  "-fill", front, "-draw", "path 'M 0,520 C 220,430 420,560 600,480 S 820,450 900,500 V 600 H 0 Z'",
                  str(path)])
    return path


def screenshot(desktop, path):
    """A window on a meadow."""
    landscape(desktop, "meadow", path)
    lines = [f"roundrectangle 210,{200 + 44 * line} {690 - 70 * (line * 5 % 4)},{212 + 44 * line} 6,6"
             for line in range(6)]
    desktop.call(["convert", str(path), "-fill", "#fbfaf7", "-draw", "roundrectangle 170,110 730,500 14,14",
                  "-fill", "#d9d5cc", "-draw", "roundrectangle 170,110 730,150 14,14",
                  "-fill", "#8d8779", "-draw", " ".join(lines), str(path)])


def hours_to_the_east():
    """Of the time zone in which it is some time after ten in the morning now."""
    return (10 - datetime.datetime.now(datetime.timezone.utc).hour + 12) % 24 - 12


class Stage(Desktop):
    """A desktop that is pleasant to look at."""

    def __init__(self, program, language):
        super().__init__(program, scale=2, services=NO_DATA_SERVER, settings={
            "language": language, "pasteOnClick": True, "calendarAccessRequested": True})
        self.texts = TEXTS[language]
        east = hours_to_the_east()
        self.zone = datetime.timezone(datetime.timedelta(hours=east))
        self.environment.update({"TZ": f"Etc/GMT{-east:+d}", "XCURSOR_THEME": "Adwaita",
                                 "XCURSOR_SIZE": str(24 * self.scale)})
        self.pictures = self.home / "home" / "Pictures" / "Screenshots"
        self.pictures.mkdir(parents=True)
        self.write_calendars()

    def _paint_background(self):
        wallpaper = self.home / "wallpaper.png"
        width, height = stage.WIDTH * self.scale, stage.HEIGHT * self.scale
        self.call(["convert", "-size", f"{width}x{height}", "gradient:#3b5f86-#c79a78", "-fill", "#ffffff26", "-draw",
                   f"rectangle 0,0 {width},{32 * self.scale - 1}", str(wallpaper)])
        self.call(["hsetroot", "-full", str(wallpaper)])

    def write_calendars(self):
        today = datetime.datetime.now(self.zone).replace(hour=0, minute=0, second=0, microsecond=0, tzinfo=None)
        folders = {}
        for name, color in COLORS.items():
            folders[name] = self.history_folder / "calendars" / self.texts[name]
            folders[name].mkdir(parents=True)
            (folders[name] / "color").write_text(color)
        for number, (where, title, *hours) in enumerate(self.texts["day"]):
            start, end = (today.replace(hour=hour, minute=minute) for hour, minute in (hours[:2], hours[2:]))
            meeting = [f"LOCATION:{self.texts['room']}",
                       "DESCRIPTION:https://meet.google.com/abc-defg-hij"] if number in (1, 2) else []
            (folders[where] / f"{number}.ics").write_text(calendar(
                [event(str(number), title, start, end, *meeting)]), newline="")
        (folders["home"] / "all-day.ics").write_text(calendar(["\r\n".join([
            "BEGIN:VEVENT", "UID:all-day", "DTSTAMP:20260101T000000Z", f"SUMMARY:{self.texts['all day']}",
            f"DTSTART;VALUE=DATE:{today:%Y%m%d}", f"DTEND;VALUE=DATE:{today + datetime.timedelta(1):%Y%m%d}",
            "END:VEVENT", ""])]), newline="")

    def x_of(self, hour, minute):
        """Where this time of the day stands on the unfolded timeline, which has the present in its middle."""
        now = datetime.datetime.now(self.zone)
        return round(NOTCH_MIDDLE + HOUR_WIDTH * (hour - now.hour + (minute - now.minute) / 60))

    def glide(self, x, y, seconds=0.6):
        """Moves the pointer as a hand does: off slowly, then fast, and slowly there."""
        there = dict(line.split("=") for line in self.xdotool("getmouselocation", "--shell").decode().split())
        start = int(there["X"]), int(there["Y"])
        steps = max(2, round(seconds * 50))
        words = []
        for step in range(1, steps + 1):
            part = step / steps
            part = part * part * (3 - 2 * part)
            place = (round(a + (b * self.scale - a) * part) for a, b in zip(start, (x, y)))
            words += ["mousemove", *place, "sleep", 0.018]
        self.xdotool(*words)


class PictureSong(Player):
    """Plays made-up songs, whose covers are landscapes."""

    def __init__(self, desktop):
        super().__init__(desktop, [(*desktop.texts[name], "black", seconds) for name, seconds in (
            ("track", 232), ("next", 187))])

    def _track(self, title, *more):
        track = super()._track(title, *more)
        cover = track.parent / "cover.jpg"
        landscape(self.desktop, "sea" if title == self.desktop.texts["track"][0] else "dusk", cover)
        self.desktop.call(["convert", str(cover), "-crop", "600x600+250+0", "-resize", "300x300", str(cover)])
        return track


class Pictures(Flow):
    def __init__(self, desktop, folder):
        super().__init__(desktop)
        self.folder = folder

    def keep(self, name, crop=FOLDED):
        """A part of the screen, once it has come to rest, as a small picture."""
        time.sleep(0.5)
        path = self.folder / f"{name}.png"
        left, top, width, height = (n * self.desktop.scale for n in crop)
        self.desktop.call(["import", "-window", "root", "-crop", f"{width}x{height}+{left}+{top}", "+repage", "-strip",
                           "-quality", "95", str(path)])
        print(path, path.stat().st_size // 1024, "KB", flush=True)

    def fills(self):
        """Half a morning's copies, a screenshot and pictures."""
        desktop = self.desktop
        hidden = desktop.pictures / ".written.png"
        screenshot(desktop, hidden)
        hidden.rename(desktop.pictures / desktop.texts["screenshot"])
        desktop.wait_for_entry("a screenshot", lambda item: item["isScreenshot"])
        for count, name in enumerate(LANDSCAPES, start=2):
            desktop.copy(landscape(desktop, name, desktop.home / f"{name}.png").read_bytes(), "image/png")
            wait_until("a picture in the history", lambda: len(
                [item for item in desktop.history() if item["kind"] == "image"]) == count)
        document = desktop.home / "home" / desktop.texts["file"]
        document.write_bytes(b"numbers")
        for text in desktop.texts["copies"][:2]:
            desktop.copy(text)
            desktop.wait_for_entry("a text", lambda item: item.get("text") == text)
        desktop.copy(document.as_uri() + "\r\n", "text/uri-list")
        desktop.wait_for_entry("a file", lambda item: item["kind"] == "files")
        for text in desktop.texts["copies"][2:]:
            desktop.copy(text)
            desktop.wait_for_entry("a text or a link", lambda item: item.get("text") == text)
        self.wait_notice_gone()

    def unfolds(self):
        self.desktop.move(SURFACE_LEFT + 230, 239)
        wait_until("the day unfolded", lambda: self.desktop.is_black(SURFACE_LEFT + 230, 315))
        self.desktop.move(SURFACE_LEFT + 420, 300)
        time.sleep(0.4)

    def draws(self, peers):
        desktop = self.desktop
        PictureSong(desktop)
        desktop.move(*BELOW_THE_SURFACE)
        desktop.start()
        self.fills()
        desktop.copy(desktop.texts["notice"])
        self.wait_for_notice("a text")
        # It would be gone before a slow computer has its picture.
        desktop.nimbarrow.send_signal(signal.SIGSTOP)
        self.keep("notice", NOTICE)
        if not desktop.is_black(NOTCH_LEFT - 40, 4):
            raise StageMissed("the notice while its picture was taken")
        desktop.nimbarrow.send_signal(signal.SIGCONT)
        self.wait_notice_gone()
        self.open_by_pointer()
        self.unfolds()
        self.keep("surface", SURFACE)
        desktop.move(desktop.x_of(11, 30), 262)
        self.keep("day", DAY)
        self.leave()
        self.open_by_pointer()
        desktop.click(PIN_X, self.row(1)[1])
        time.sleep(0.6)
        desktop.move(*self.row(2))
        self.keep("history")
        desktop.click(SHARE_X, self.row(2)[1])
        self.keep("share")
        desktop.click(SURFACE_LEFT + 60, 100)
        self.leave()
        for name, place in (("player", VOLUME), ("owl", OWL)):
            self.open_by_pointer()
            desktop.click(*place)
            self.keep(name)
            self.leave()
        self.open_by_pointer()
        desktop.click(*GEAR)
        self.keep("settings")
        desktop.move(SURFACE_LEFT + 150, 150)
        desktop.xdotool("click", "--repeat", 10, WHEEL_DOWN)
        self.keep("settings-end")
        desktop.click(*GEAR)
        self.leave()
        desktop.key("super+shift+v")
        self.wait_open()
        desktop.key("Down")
        self.keep("keyboard")
        desktop.key("Right")
        desktop.xdotool("keydown", "space")
        time.sleep(1)
        self.keep("preview", LARGE)
        desktop.xdotool("keyup", "space")
        desktop.key("Escape")
        self.wait_closed()
        source = DragSource(desktop, peers)
        desktop.move(*source.text_place)
        desktop.drag(source.text_place, (NOTCH_MIDDLE, 20))
        wait_until("the surface open for the drop", self.is_open)
        self.keep("drop")
        desktop.move(*BELOW_THE_SURFACE)
        desktop.xdotool("mouseup", 1)
        source.close()


class Movie(Pictures):
    """The main flow in a few seconds: copy, see the notice, paste from the history, see the day."""

    def plays(self):
        desktop = self.desktop
        PictureSong(desktop)
        desktop.start()
        self.fills()
        letter = Letter(desktop)
        with Recording(desktop, self.folder / "flow.webp", MOVIE):
            time.sleep(0.8)
            desktop.glide(letter.left + 70, letter.first_line, 0.5)
            desktop.xdotool("click", "--repeat", 3, "--delay", 60, 1)
            time.sleep(0.5)
            desktop.key("ctrl+c")
            time.sleep(1.9)
            desktop.key("ctrl+End")
            time.sleep(0.3)
            desktop.glide(NOTCH_MIDDLE, 20, 0.9)
            time.sleep(0.9)
            desktop.glide(*self.row(0), 0.5)
            time.sleep(0.3)
            desktop.glide(*self.row(2), 0.4)
            time.sleep(0.4)
            desktop.xdotool("click", 1)
            time.sleep(1.6)
            desktop.glide(NOTCH_MIDDLE + 6, 14, 0.7)
            time.sleep(0.6)
            desktop.glide(SURFACE_LEFT + 230, 239, 0.6)
            time.sleep(0.7)
            desktop.glide(desktop.x_of(11, 30), 262, 0.5)
            time.sleep(1.8)
            desktop.glide(NOTCH_MIDDLE + 200, 480, 0.6)
            time.sleep(1.0)
        copied = [item.get("text") for item in desktop.history()]
        if desktop.texts["subject"] not in copied or desktop.pasted().decode() != desktop.texts["copies"][2]:
            raise StageMissed(f"the copied subject and the pasted link in the moving picture: {copied}")


class Letter:
    """A letter in an editor below the surface."""

    def __init__(self, desktop):
        self.left, self.first_line = MOVIE[0] + 60, 339
        file = desktop.home / desktop.texts["letter name"]
        file.write_text(f"{desktop.texts['subject']}\n\n{desktop.texts['letter']}")
        settings = desktop.home / "config" / "glib-2.0" / "settings"
        settings.mkdir(parents=True)
        (settings / "keyfile").write_text(
            "[org/xfce/mousepad/preferences/window]\npath-in-title=false\nmenubar-visible=false\n"
            "[org/xfce/mousepad/preferences/view]\nuse-default-monospace-font=false\nfont-name='Noto Sans 11'\n")
        # Above the text of root stands a warning.
        nobody = ["unshare", "--user"] if os.geteuid() == 0 else []
        desktop.spawn([*nobody, "env", "GSETTINGS_BACKEND=keyfile", "GTK_CSD=1", f"GDK_SCALE={desktop.scale}",
                       "mousepad", "--disable-server", str(file)])
        window = wait_until("the editor's window", lambda: desktop.xdotool(
            "search", "--sync", "--onlyvisible", "--class", "mousepad").split()[-1].decode(), 30)
        scale = desktop.scale
        desktop.xdotool("windowsize", window, (MOVIE[2] - 120) * scale, 200 * scale)
        desktop.xdotool("windowmove", window, self.left * scale, 290 * scale)
        desktop.xdotool("windowactivate", "--sync", window)
        time.sleep(1)


class Recording:
    """A part of the screen, with the pointer, as a moving picture."""

    def __init__(self, desktop, path, crop):
        self.desktop = desktop
        self.path = path
        self.raw = desktop.home / "recording.mkv"
        left, top, width, height = (n * desktop.scale for n in crop)
        self.command = ["ffmpeg", "-loglevel", "error", "-y", "-f", "x11grab", "-framerate", str(FRAMES_PER_SECOND),
                        "-video_size", f"{width}x{height}", "-i", f"{desktop.environment['DISPLAY']}+{left},{top}",
                        "-c:v", "libx264", "-preset", "ultrafast", "-qp", "0", str(self.raw)]

    def __enter__(self):
        self.process = self.desktop.spawn(self.command)
        wait_until("a recording", self.raw.exists, 20)

    def __exit__(self, *_):
        self.process.send_signal(signal.SIGINT)
        self.process.wait(60)
        # Takes a while.
        subprocess.run(["ffmpeg", "-loglevel", "error", "-y", "-i", str(self.raw), "-c:v", "libwebp_anim", "-loop", "0",
                        "-quality", "70", "-compression_level", "5", str(self.path)], check=True)
        print(self.path, self.path.stat().st_size // 1024, "KB", flush=True)


def main(program, peers, folder, *languages):
    for language in languages or TEXTS:
        pictures = pathlib.Path(folder).resolve() / language
        pictures.mkdir(parents=True, exist_ok=True)
        with Stage(program, language) as desktop:
            Pictures(desktop, pictures).draws(peers)
        with Stage(program, language) as desktop:
            Movie(desktop, pictures).plays()


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
