"""The clipboard manager that Nimbarrow is measured beside."""

import subprocess

from desktop import wait_until


class Peer:
    """`with Peer(desktop) as peer:` has it running, with room for more entries than are ever measured."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.server = None
        self.watching = None

    def __enter__(self):
        self.launch()
        wait_until("the peer", self.answers)
        # By default it keeps a change to itself for five minutes before it writes it.
        self.evaluate("config('maxitems', 1000); config('save_delay_ms_on_item_added', 500)")
        return self

    def __exit__(self, *_):
        self.stop()

    def launch(self):
        """Starts it and does not wait."""
        self.server = self.desktop.spawn(["copyq"])

    def stop(self):
        self.stop_watching()
        self.desktop.call(["copyq", "exit"])
        self.server.wait(10)

    def answers(self):
        return subprocess.run(["copyq", "eval", "1"], env=self.desktop.environment,
                              capture_output=True).returncode == 0

    def evaluate(self, script):
        return self.desktop.call(["copyq", "eval", script]).decode()

    def write_image(self, path):
        self.desktop.call(["copyq", "write", "0", "image/png", "-"], input=path.read_bytes())

    def count(self):
        return int(self.evaluate("print(count())"))

    def watch(self, script):
        """A client that runs the script until it is stopped. Returns the process, with its output in a pipe."""
        self.watching = self.desktop.spawn(["copyq", "eval", script], stdout=subprocess.PIPE)
        return self.watching

    def stop_watching(self):
        """The client has no ear for anything milder, and the peer would ask before it ends under a client."""
        if self.watching:
            self.watching.kill()
            self.watching.wait()
        self.watching = None
