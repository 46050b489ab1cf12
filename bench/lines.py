"""Lines of another process with the moment at which each has arrived."""

import queue
import threading
import time


class Lines:
    def __init__(self, process):
        self._lines = queue.Queue()
        threading.Thread(target=self._read, args=(process.stdout,), daemon=True).start()

    def _read(self, stream):
        for line in stream:
            self._lines.put((time.monotonic(), line.decode().rstrip("\n")))

    def next(self, matches=lambda line: True, seconds=10):
        """The moment and the text of the first new line that matches."""
        end = time.monotonic() + seconds
        while True:
            moment, line = self._lines.get(timeout=max(end - time.monotonic(), 0.001))
            if matches(line):
                return moment, line

    def moment_of(self, text):
        return self.next(lambda line: line == text)[0]

    def taken(self):
        """All that have arrived since; they do not come again."""
        taken = []
        while not self._lines.empty():
            taken.append(self._lines.get())
        return taken
