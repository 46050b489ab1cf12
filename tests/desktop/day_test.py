"""day_test.py PROGRAM PEERS: today's events from a real Evolution Data Server and a folder of calendar files together, on a
private desktop."""

import contextlib
import datetime
import os
import pathlib
import signal
import sys
import time

from desktop import reached, run_test, StageMissed, wait_until
from flow import Flow, SURFACE_LEFT

STRIP = (SURFACE_LEFT + 230, 239)
EVENT_ROW_Y = 245

CALENDAR_PROGRAM = pathlib.Path(__file__).resolve().parent / "peers" / "calendar_program.py"


def event(uid, title, start, end, *more):
    """Local times, as people make them."""
    stamp = "%Y%m%dT%H%M%S"
    return "\r\n".join(["BEGIN:VEVENT", f"UID:{uid}", "DTSTAMP:20260101T000000Z", f"SUMMARY:{title}",
                        f"DTSTART:{start.strftime(stamp)}", f"DTEND:{end.strftime(stamp)}", *more, "END:VEVENT", ""])


def calendar(components):
    return "\r\n".join(["BEGIN:VCALENDAR", "VERSION:2.0", "PRODID:-//Test//Test//EN", "METHOD:PUBLISH",
                        "".join(components) + "END:VCALENDAR", ""])


class DayFlow(Flow):
    def __init__(self, desktop, show=lambda stage: None):
        super().__init__(desktop, show)
        now = datetime.datetime.now()
        self.day = now.replace(hour=0, minute=0, second=0, microsecond=0)
        # The day opens at the present, and everything that is to be seen stands around it.
        self.hour = min(max(now.hour, 4), 19)

    def at(self, hour, minute=0, day=0):
        return self.day + datetime.timedelta(days=day, hours=hour, minutes=minute)

    def events(self):
        """A working person's day: each event with its changed occurrences."""
        hour = self.hour
        stamp = "%Y%m%dT%H%M%S"
        weekly = self.at(hour - 2, day=-7)
        return [
            [event("planning", "Planning", self.at(hour), self.at(hour + 1, 30))],
            [event("off", "Called off", self.at(hour + 1), self.at(hour + 2), "STATUS:CANCELLED")],
            # Each week at one hour; today's was moved to another.
            [event("weekly", "Weekly", weekly, weekly + datetime.timedelta(hours=1), "RRULE:FREQ=WEEKLY;COUNT=5"),
             event("weekly", "Moved today", self.at(hour + 2), self.at(hour + 3),
                   f"RECURRENCE-ID:{self.at(hour - 2).strftime(stamp)}")],
        ]

    # What the calendars of `events` show today, and what not.
    TODAY = ("Planning", "Moved today")
    NOT_TODAY = ("Called off", "Weekly")

    def unfold(self):
        self.open_by_pointer()
        self.desktop.move(*STRIP)
        wait_until("the day unfolded", lambda: self.desktop.is_black(SURFACE_LEFT + 230, 315))
        time.sleep(0.4)

    def fold(self):
        self.desktop.move(SURFACE_LEFT + 300, 100)
        wait_until("the day folded", lambda: not self.desktop.is_black(SURFACE_LEFT + 230, 290))
        self.leave()

    def told(self):
        return [node["name"] for node in self.reader.nodes() if node["role"] == "push button"]

    def wait_told(self, title, seconds=15):
        wait_until(f"{title!r} among {self.told()}", lambda: title in self.told(), seconds)

    def asks(self):
        """Nothing is read before the user wants it."""
        self.unfold()
        self.show("ask")
        button = wait_until("the question for the calendar", lambda: next(
            (node for node in self.reader.nodes() if node["name"] == "Show today's calendar"), None))
        left, top, width, height = button["extents"]
        self.desktop.click(left + width // 2, top + height // 2)
        self.desktop.move(STRIP[0] + 4, STRIP[1] + 20)
        wait_until("a free day", lambda: "Nothing today" in self.reader.texts(), 30)

    def shows_today(self):
        for title in self.TODAY:
            self.wait_told(title)
        for title in self.NOT_TODAY:
            if title in self.told():
                raise StageMissed(f"no {title!r} in the day")
        self.show("day")

    def creates(self, is_there):
        """A double click on the day makes an event."""
        before = set(self.told())
        for x in range(SURFACE_LEFT + 40, SURFACE_LEFT + 420, 30):
            # Where nothing stands yet.
            if self.desktop.is_black(x, EVENT_ROW_Y + 12) and self.desktop.is_black(x + 6, EVENT_ROW_Y + 30):
                self.desktop.move(x, EVENT_ROW_Y + 12)
                self.desktop.xdotool("click", "--repeat", 2, "--delay", 60, 1)
                break
        wait_until("the new event in the calendar", is_there)
        self.wait_told("New Event")
        if "New Event" in before:
            raise StageMissed("a new event")


    def opens_by_key(self, title):
        """The Tab key unfolds the day and goes through it; Return shows what it is on."""
        self.open_by_key()
        self.tabs_to(title)
        self.desktop.key("Return", "Escape")
        self.wait_closed()


def install(desktop, name):
    """A program that writes down what it is asked to show."""
    folder = desktop.home / "bin"
    folder.mkdir(exist_ok=True)
    shown = desktop.home / ("shown by " + name)
    (folder / name).write_text(f"#!/bin/sh\necho \"$@\" >> '{shown}'\n")
    (folder / name).chmod(0o755)
    desktop.environment["PATH"] = f"{folder}:{desktop.environment['PATH']}"


@contextlib.contextmanager
def stopped_server(desktop):
    """It is there and says nothing."""
    mark = f"DBUS_SESSION_BUS_ADDRESS={desktop.environment['DBUS_SESSION_BUS_ADDRESS']}".encode()
    processes = []
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):
            if b"evolution-" in (process / "cmdline").read_bytes() and mark in (process / "environ").read_bytes():
                processes.append(int(process.name))
    if not processes:
        raise StageMissed("a server that could be stopped")
    for process in processes:
        os.kill(process, signal.SIGSTOP)
    try:
        yield
    finally:
        for process in processes:
            os.kill(process, signal.SIGCONT)


def calendar_folder(desktop):
    folder = desktop.history_folder / "calendars" / "Work"
    folder.mkdir(parents=True)
    return folder


def in_both(desktop, flow):
    ask = lambda command, **more: desktop.call([sys.executable, CALENDAR_PROGRAM, command, "system-calendar"], **more).decode()
    flow.asks()
    for components in flow.events():
        ask("receive", input=calendar(components).encode())
    # By the same name as an event of the server.
    walk = calendar([event("planning", "Walk", flow.at(flow.hour - 1), flow.at(flow.hour))])
    (calendar_folder(desktop) / "walk.ics").write_text(walk, newline="")
    flow.wait_told("Walk")
    flow.shows_today()
    flow.fold()
    flow.opens_by_key("Walk")
    shown = desktop.home / "shown by gio"
    wait_until("the walk in the program for its file", lambda: shown.exists() and "walk.ics" in shown.read_text())
    flow.unfold()
    shown = desktop.home / "shown by gnome-calendar"
    flow.creates(lambda: "New Event" in ask("list"))
    wait_until("the new event in the calendar program", lambda: shown.exists() and "--uuid" in shown.read_text())
    desktop.usual_log.append("ua.tessak.Nimbarrow.calendar.eds")
    with stopped_server(desktop):
        flow.fold()
        flow.unfold()
        flow.wait_told("Walk")
        flow.shows_today()
        desktop.stop()
        desktop.start()
        flow.unfold()
        flow.wait_told("Walk")
        flow.show("without the server")
    flow.wait_told("Planning", 40)


def play(desktop):
    flow = DayFlow(desktop, reached)
    install(desktop, "gnome-calendar")
    # The first that a bare window manager has files opened by.
    install(desktop, "gio")
    desktop.start()
    in_both(desktop, flow)
    flow.fold()


if __name__ == "__main__":
    sys.exit(run_test(sys.argv[1], play, told=True, settings={"language": "en"}))
