"""Files of a mod that are data: TOML that is read as such, and what is wrong with one, by file and line."""

from __future__ import annotations

import os
import re
import stat
import tomllib
from typing import Any

#: A larger file is none that a person has written.
MOST_BYTES = 4 << 20

_AT_LINE = re.compile(r'(.*?) \(at line (\d+), column \d+\)')


class Fault(Exception):
    """What is wrong with a mod: the file as its author knows it, the line (0 for all of it), and a sentence."""

    def __init__(self, file: str, line: int, text: str):
        super().__init__('%s:%d: %s' % (file, line, text) if line else '%s: %s' % (file, text))
        self.file, self.line, self.text = file, line, text


class Toml:
    """A file of TOML: its values, and the lines that they stand in. `shown` is its name in texts."""

    def __init__(self, path: str, shown: str):
        self.path, self.shown = path, shown
        self._text = _read(path, shown)
        try:
            self.values: dict[str, Any] = tomllib.loads(self._text)
        except tomllib.TOMLDecodeError as error:
            found = _AT_LINE.fullmatch(str(error))
            end = self._text.count('\n') + 1
            raise Fault(shown, int(found[2]) if found else end, found[1] if found else str(error)) from None
        except RecursionError:
            raise Fault(shown, 0, 'it is nested too deeply') from None

    def anew(self) -> Toml:
        """The same file as it is now."""
        return Toml(self.path, self.shown)

    def lineOf(self, key: str, table: str = '', number: int = 0) -> int:
        """The line of a key in a table, `number` of those of an array of tables; that of the table where it has none.

        0 where there is no such table.
        """
        named = re.compile(r'\s*(["\']?)%s\1\s*[=.]' % re.escape(key))
        inside, seen, begin = table == '', 0, 0
        for at, line in enumerate(self._text.splitlines(), 1):
            head = re.match(r'\s*(\[\[?)\s*(.+?)\s*\]', line)
            if head:
                isThis = head[2].strip('"\'') == table
                inside = isThis and (head[1] == '[' or seen == number)
                seen += isThis
                begin = at if inside else begin
            elif inside and key and named.match(line):
                return at
        return begin

    def fault(self, text: str, key: str = '', table: str = '', number: int = 0) -> Fault:
        """A fault of this file, at the line of a key."""
        return Fault(self.shown, self.lineOf(key, table, number), text)


def _read(path: str, shown: str) -> str:
    try:
        # Neither a link to somewhere else nor a pipe, which would be waited for.
        handle = os.open(path, os.O_RDONLY | os.O_NOFOLLOW | os.O_NONBLOCK | os.O_CLOEXEC)
        with os.fdopen(handle, 'rb') as file:
            if not stat.S_ISREG(os.fstat(handle).st_mode):
                raise Fault(shown, 0, 'it is no file')
            content = file.read(MOST_BYTES + 1)
    except OSError as error:
        raise Fault(shown, 0, 'it cannot be read: %s' % error.strerror) from None
    if len(content) > MOST_BYTES:
        raise Fault(shown, 0, 'it has more than %d bytes' % MOST_BYTES)
    try:
        return content.decode('utf-8').replace('\r\n', '\n')
    except UnicodeDecodeError as error:
        raise Fault(shown, content.count(b'\n', 0, error.start) + 1, 'it is no text in UTF-8') from None
