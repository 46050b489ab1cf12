"""gtk_window.py FILE: a window of the compositor's own kind over the whole screen, with a text that it keeps writing to
FILE, after a line with the number of clicks and whether it has the keyboard. F2 copies a secret, F3 a picture, F4 a
little text forty times."""

import pathlib
import sys

import gi
gi.require_version("Gdk", "4.0")
gi.require_version("Gtk", "4.0")
from gi.repository import Gdk, GLib, Gtk  # noqa: E402


def offer(**types):
    return Gdk.ContentProvider.new_union([
        Gdk.ContentProvider.new_for_bytes(kind, GLib.Bytes.new(data)) for kind, data in types.items()])


def secret():
    return offer(**{"text/plain;charset=utf-8": b"a secret", "x-kde-passwordManagerHint": b"secret"})


def picture():
    row = bytes((200, 80, 40)) * 64
    texture = Gdk.MemoryTexture.new(64, 48, Gdk.MemoryFormat.R8G8B8, GLib.Bytes.new(row * 48), len(row))
    return Gdk.ContentProvider.new_for_bytes("image/png", texture.save_to_png_bytes())


class Window:
    def __init__(self, application, path):
        self.path = path
        self.clicks = 0
        self.window = Gtk.ApplicationWindow(application=application, title="Gtk window")
        self.text = Gtk.TextView()
        self.text.get_buffer().connect("changed", lambda *_: self.write())
        self.window.set_child(self.text)
        keys = Gtk.EventControllerKey(propagation_phase=Gtk.PropagationPhase.CAPTURE)
        keys.connect("key-pressed", self.follow)
        self.window.add_controller(keys)
        clicks = Gtk.GestureClick(propagation_phase=Gtk.PropagationPhase.CAPTURE)
        clicks.connect("pressed", lambda *_: self.count_click())
        self.text.add_controller(clicks)
        self.window.connect("notify::is-active", lambda *_: self.write())
        self.window.fullscreen()
        self.window.present()
        self.text.grab_focus()

    def count_click(self):
        self.clicks += 1
        self.write()

    def write(self):
        content = self.text.get_buffer()
        text = content.get_text(content.get_start_iter(), content.get_end_iter(), False)
        pathlib.Path(self.path).write_text(f"{self.clicks} {'active' if self.window.is_active() else ''}\n{text}")

    def follow(self, _controller, key, *_):
        clipboard = self.window.get_clipboard()
        if key == Gdk.KEY_F2:
            clipboard.set_content(secret())
        elif key == Gdk.KEY_F3:
            clipboard.set_content(picture())
        elif key == Gdk.KEY_F4:
            self.copy_next(1)
        else:
            return False
        return True

    def copy_next(self, number):
        self.window.get_clipboard().set_content(offer(**{"text/plain;charset=utf-8": b"number %d" % number}))
        if number < 40:
            GLib.timeout_add(20, self.copy_next, number + 1)


application = Gtk.Application()
application.connect("activate", lambda it: setattr(it, "first", Window(it, sys.argv[1])))
application.run()
