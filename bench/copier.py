"""A program on the private desktop that copies as soon as it is told to."""

import subprocess
import time


class Copier:
    def __init__(self, desktop, build):
        self._process = subprocess.Popen([str(build / "bench" / "Copier")], stdin=subprocess.PIPE,
                                         env={**desktop.environment, "QT_QPA_PLATFORM": (
                                             "xcb" if "DISPLAY" in desktop.environment else "offscreen")})
        desktop.processes.append(self._process)
        time.sleep(1)

    def _tell(self, line):
        """The moment of the copy."""
        moment = time.monotonic()
        self._process.stdin.write((line + "\n").encode())
        self._process.stdin.flush()
        return moment

    def text(self, text):
        return self._tell("text " + text)

    def png(self, path):
        return self._tell(f"png {path}")
