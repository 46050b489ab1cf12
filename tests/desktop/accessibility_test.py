"""accessibility_test.py PROGRAM PEERS: the surface as a screen reader tells it and as the keyboard alone uses it, on a
private desktop."""

import sys
import time

from desktop import run_test, StageMissed, wait_until
from settings_test import SettingsFlow, WHEEL_DOWN, WHEEL_UP

SETTINGS = {"en": ("push button", "Settings"), "uk": ("push button", "Налаштування")}
SWITCHES = {
    "en": ["Launch at login", "Show new clipboard items", "Show track changes", "Watch for screenshots",
           "Paste on click", "Super+Shift+V hot key", "Today's calendar"],
    "uk": ["Запускати при вході", "Показувати нове з буфера", "Показувати зміну треку", "Стежити за скріншотами",
           "Вставляти кліком", "Хоткей Super+Shift+V", "Календар на сьогодні"],
}
CHOICES = {"en": ["50", "100", "200", "System", "Українська", "English"],
           "uk": ["50", "100", "200", "Як у системі", "Українська", "English"]}
BUTTONS = {"en": ["Clear history", "☕ Buy me a coffee"], "uk": ["Очистити історію", "☕ Підтримати"]}


class AccessibilityFlow(SettingsFlow):
    def named(self, role):
        return [control["name"] for control in self.reader.controls() if control["role"] == role]

    def named_controls(self):
        """Each control says what it is and can be used without a pointer."""
        controls = self.reader.controls()
        for control in controls:
            if not control["name"].strip() or not {"Press", "Toggle"} & set(control["actions"]):
                raise StageMissed(f"a name and an action for {control}")
        return controls

    def tells_history(self):
        desktop = self.desktop
        desktop.copy_texts("First of two", "Second of two")
        self.open_by_key()
        wait_until("both entries told", lambda: {"First of two", "Second of two"} <= set(self.named("list item")))
        self.named_controls()
        self.press("list item", "First of two")
        wait_until("the pressed entry on the clipboard", lambda: desktop.pasted() == b"First of two")

    def keeps_history_from_return(self):
        """The keys stay with a control only until an arrow takes them back, and never from one opening to the next."""
        self.desktop.key("Escape")
        for after, pasted in ((["Down", "Return"], b"First of two"),
                              (["Escape", "super+shift+v", "Return"], b"Second of two")):
            self.wait_closed()
            self.open_by_key()
            self.desktop.key("Down")
            self.tabs_to("Clear")
            for key in after:
                self.desktop.key(key)
                time.sleep(0.5)
            wait_until(f"the marked entry pasted after Clear, {after}", lambda: self.desktop.pasted() == pasted, 5)
            if len(self.desktop.history()) != 2:
                raise StageMissed(f"the whole history after Clear, {after}")
        self.wait_closed()
        self.open_by_key()

    def reaches_the_surface_with_tab(self):
        """The owl's durations open under the key that asks for them, and give it back."""
        self.tabs_to("Keep the computer awake")
        self.desktop.key("Return")
        wait_until("the first duration under the key", lambda: self.focused() == ["1 h"], 5)
        self.desktop.key("Escape")
        wait_until("the owl under the key again", lambda: self.focused() == ["Keep the computer awake"], 5)
        self.desktop.key("space")
        self.tabs_to("∞")
        self.desktop.key("Down")
        wait_until("no duration to be pressed", lambda: "∞" not in self.reader.texts(), 5)
        self.tabs_to("Keep the computer awake")
        self.desktop.key("space")
        self.tabs_to("∞")
        self.desktop.key("Return")
        wait_until("the owl, awake, under the key after the choice", lambda: self.focused() == ["Allow sleep"], 5)
        self.desktop.key("space")
        wait_until("the owl asleep under the key", lambda: self.focused() == ["Keep the computer awake"], 5)

    def tells_settings(self, language):
        """What is in view at the beginning of the page and, then, at its end."""
        told = {"check box": [], "radio button": [], "push button": []}
        for end in (WHEEL_UP, WHEEL_DOWN):
            self.scrolls(end)
            for control in self.named_controls():
                names = told.setdefault(control["role"], [])
                if control["name"] not in names:
                    names.append(control["name"])
        if told["check box"] != SWITCHES[language] or told["radio button"] != CHOICES[language]:
            raise StageMissed(f"{SWITCHES[language]} and {CHOICES[language]}, not {told}")
        if not set(BUTTONS[language]) | {SETTINGS[language][1]} <= set(told["push button"]):
            raise StageMissed(f"{BUTTONS[language]} among {told['push button']}")

    def state(self, name):
        return next(control["checked"] for control in self.reader.controls() if control["name"] == name)

    def uses_settings(self):
        self.press(*SETTINGS["en"])
        wait_until("the switches told", lambda: len(self.named("check box")) == 7)
        self.tells_settings("en")
        self.scrolls(WHEEL_UP)
        before = self.state("Show track changes")
        self.press("check box", "Show track changes")
        wait_until("the pressed switch in its other state", lambda: self.state("Show track changes") != before, 5)
        self.scrolls(WHEEL_DOWN)
        self.press("radio button", "200")
        wait_until("the pressed choice", lambda: self.state("200") and not self.state("100"), 5)
        self.press("radio button", "Українська")
        wait_until("another language", lambda: "Мова" in self.reader.texts(), 5)
        self.tells_settings("uk")
        # The keys that a screen reader and people press there belong to the settings, not to hidden entries.
        self.desktop.key("Delete")
        time.sleep(0.8)
        if len(self.desktop.history()) != 2:
            raise StageMissed("a history that the keyboard leaves alone behind the settings")

    def reaches_all_with_tab(self):
        missing = set(SWITCHES["uk"] + BUTTONS["uk"] + ["Історія, елементів", "Мова", "Налаштування"])

        def are_all_reached():
            missing.difference_update(self.focused())
            return not missing

        self.tabs_until(missing, are_all_reached)

    def toggles_with_space(self):
        boxes = lambda: [box for box in self.reader.controls() if box["focused"] and box["role"] == "check box"]
        self.tabs_until("a check box", boxes)
        name, before = boxes()[0]["name"], boxes()[0]["checked"]
        self.desktop.key("space")
        wait_until(f"{name} toggled by the space bar", lambda: self.state(name) != before, 5)
        self.close_by_key()


def play(desktop):
    flow = AccessibilityFlow(desktop)
    desktop.start()
    flow.tells_history()
    flow.keeps_history_from_return()
    flow.reaches_the_surface_with_tab()
    flow.uses_settings()
    flow.reaches_all_with_tab()
    flow.toggles_with_space()


if __name__ == "__main__":
    sys.exit(run_test(sys.argv[1], play, told=True, settings={"language": "en"}))
