"""flow_test.py PROGRAM PEERS: the main flow, end to end, on a private desktop."""

import sys

from desktop import reached, run_test
from flow import play_main_flow

if __name__ == "__main__":
    sys.exit(run_test(sys.argv[1], lambda desktop: play_main_flow(desktop, sys.argv[2], reached),
                      settings={"pasteOnClick": True, "language": "en"}))
