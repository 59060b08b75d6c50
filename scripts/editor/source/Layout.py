"""How calls and tables are laid out in lines of no more than 120 columns, as levels have them."""

from __future__ import annotations

from typing import Sequence

WIDTH = 120


def call(indent: int, head: str, arguments: Sequence[str], tail: str = ')') -> str:
    """The line or lines of a call: `head` ends with its opening parenthesis."""
    return wrapped(indent, head, arguments, tail) + '\n'


def wrapped(indent: int, head: str, items: Sequence[str], tail: str) -> str:
    """Items with commas between them; those that find no place stand under the first one."""
    rows, row = [], ' ' * indent + head
    under = len(row)
    for number, item in enumerate(items):
        text = item + (', ' if number + 1 < len(items) else tail)
        if len(row) + len(text.rstrip()) > WIDTH and row.strip() and len(row) > under:
            rows.append(row.rstrip())
            row = ' ' * under
        row += text
    if not items:
        row += tail
    return '\n'.join([*rows, row])
