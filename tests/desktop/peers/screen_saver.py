"""A screen saver on the session bus that only keeps who inhibits it; each change is a line with how many there are."""

import sys

import dbus
import dbus.service
from dbus.mainloop.glib import DBusGMainLoop
from gi.repository import GLib

NAME = "org.freedesktop.ScreenSaver"


class ScreenSaver(dbus.service.Object):
    def __init__(self, bus):
        self.name = dbus.service.BusName(NAME, bus)
        super().__init__(bus, "/org/freedesktop/ScreenSaver")
        self.held = {}
        self.last = 0
        bus.add_signal_receiver(self.forget, "NameOwnerChanged", "org.freedesktop.DBus")

    @dbus.service.method(NAME, in_signature="ss", out_signature="u", sender_keyword="sender")
    def Inhibit(self, _program, _reason, sender=None):
        self.last += 1
        self.held[self.last] = sender
        self.report()
        return self.last

    @dbus.service.method(NAME, in_signature="u", out_signature="", sender_keyword="sender")
    def UnInhibit(self, cookie, sender=None):
        self.held.pop(int(cookie), None)
        self.report()

    def forget(self, name, _old, new):
        if not new and name in self.held.values():
            self.held = {cookie: sender for cookie, sender in self.held.items() if sender != name}
            self.report()

    def report(self):
        with open(sys.argv[1], "a") as log:
            log.write(f"{len(self.held)}\n")


DBusGMainLoop(set_as_default=True)
saver = ScreenSaver(dbus.SessionBus())
GLib.MainLoop().run()
