"""What lasts from the start of the game to its end, while levels come and go."""

import os
import time
from typing import Any

#: Whether the splash has been shown.
splashShown = False

#: Whether the main menu has been shown.
menuShown = False

#: Lines that the console has been given names and keys for: by the name, and by the key.
aliases: dict[str, str] = {}
boundLines: dict[str, str] = {}

#: What the editor knows of levels that it was opened in, by their names: pieces, and the edits that can be undone.
editing: dict[str, Any] = {}


def secondsSinceStart() -> float:
    """Seconds of wall time since the process was started, to a hundredth."""
    with open('/proc/self/stat', encoding='ascii', errors='replace') as file:
        started = int(file.read().rpartition(')')[2].split()[19]) / os.sysconf('SC_CLK_TCK')
    return time.clock_gettime(time.CLOCK_BOOTTIME) - started
