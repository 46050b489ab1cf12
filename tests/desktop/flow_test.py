"""flow_test.py PROGRAM PEERS: the main flow, end to end, on a private desktop."""

import sys

from desktop import reached, run_test
from flow import DragSource, Editor, Flow


def play(desktop, peers):
    flow = Flow(desktop, reached)
    editor = Editor(desktop)
    desktop.start()
    flow.copies()
    flow.hovers()
    flow.click_pastes(editor)
    flow.leaves()
    flow.keyboard(editor)
    flow.stays_closed()
    source = DragSource(desktop, peers)
    flow.drops(source)
    source.close()
    flow.restarts()


if __name__ == "__main__":
    sys.exit(run_test(sys.argv[1], lambda desktop: play(desktop, sys.argv[2]),
                      settings={"pasteOnClick": True, "language": "en"}))
