"""handoff_test.py PROGRAM PEERS: entries opened, dragged out and looked at, on a private desktop."""

import sys

from desktop import reached, run_test
from handoff import DropTarget, Handler, Handoff


def play(desktop, peers):
    flow = Handoff(desktop, reached)
    handler = Handler(desktop)
    flow.looks_at_the_desktop()
    desktop.start()
    flow.fills()
    flow.double_clicks(handler)
    flow.leave()
    target = DropTarget(desktop, peers)
    flow.drags_out(target)
    flow.previews()
    flow.carries_after_a_preview(target)
    target.close()


if __name__ == "__main__":
    sys.exit(run_test(sys.argv[1], lambda desktop: play(desktop, sys.argv[2]), settings={"language": "en"}))
