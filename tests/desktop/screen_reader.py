"""What a screen reader is told: the tree of the program on the accessibility bus, read in a process of its own."""

import json
import os
import subprocess
import sys
import time

ACTIONABLE = ("push button", "check box", "radio button", "toggle button", "list item", "link", "slider")


class ScreenReader:
    """Asks a process of its own."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.process = None

    def _ask(self, *words):
        if not self.process:
            self.process = self.desktop.spawn([sys.executable, __file__], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        for _ in range(2):
            self.process.stdin.write(json.dumps([self.desktop.nimbarrow.pid, *words]).encode() + b"\n")
            self.process.stdin.flush()
            answer = json.loads(self.process.stdout.readline())
            if answer is not None:
                return answer
            # Something went while it was being read, such as what fades out; now it is gone.
            time.sleep(0.5)
        raise RuntimeError(f"The program's tree cannot be read: {words}")

    def nodes(self):
        """All that is to be seen now, as a list of role, name, states and actions, in reading order."""
        return self._ask("tree")

    def controls(self):
        """What of it can be used."""
        return [node for node in self.nodes() if node["role"] in ACTIONABLE]

    def texts(self):
        return [node["name"] for node in self.nodes()]

    def press(self, role, name):
        """False when there is no such control or it does not do it."""
        return self._ask("press", role, name)


def _library():
    import gi
    gi.require_version("Atspi", "2.0")
    from gi.repository import Atspi
    return Atspi


def _nodes(pid):
    Atspi = _library()

    def walk(node, depth=0):
        if node is None or depth > 40:
            return
        # The program itself shows nothing, its windows do.
        if depth == 0 or node.get_state_set().contains(Atspi.StateType.SHOWING):
            yield node
        for index in range(node.get_child_count()):
            yield from walk(node.get_child_at_index(index), depth + 1)

    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        program = desktop.get_child_at_index(index)
        if program and program.get_process_id() == pid:
            yield from walk(program)


def _role(node):
    """By one name, which newer releases have shortened."""
    name = node.get_role_name()
    return "push button" if name == "button" else name


def _described(node):
    Atspi = _library()
    states = node.get_state_set()
    action = node.get_action_iface()
    place = node.get_component_iface().get_extents(Atspi.CoordType.SCREEN) if node.get_component_iface() else None
    return {
        "role": _role(node), "name": node.get_name() or "",
        "checked": states.contains(Atspi.StateType.CHECKED), "focusable": states.contains(Atspi.StateType.FOCUSABLE),
        "focused": states.contains(Atspi.StateType.FOCUSED),
        # Left, top, width and height on the screen, in pixels.
        "extents": [place.x, place.y, place.width, place.height] if place else [],
        "actions": [action.get_action_name(index) for index in range(action.get_n_actions())] if action else [],
    }


def _press(node):
    action = node.get_action_iface()
    for index in range(action.get_n_actions() if action else 0):
        if action.get_action_name(index).lower() in ("press", "toggle"):
            return action.do_action(index)
    return False


def _answer(pid, what, role=None, name=None):
    if what == "tree":
        return [_described(node) for node in _nodes(pid)]
    return any(_press(node) for node in _nodes(pid) if (_role(node), node.get_name()) == (role, name))


def main():
    """Each question in a process of its own, as the library keeps the bus and the tree that it has seen first."""
    _library()
    for line in sys.stdin:
        process = os.fork()
        if process == 0:
            print(json.dumps(_answer(*json.loads(line))), flush=True)
            os._exit(0)
        if os.waitpid(process, 0)[1] != 0:
            print("null", flush=True)


if __name__ == "__main__":
    main()
