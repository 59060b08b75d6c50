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
        if len(row) + len(text.rstrip()) > WIDTH:
            *whole, text = (row + broken(text, len(row))).split('\n')
            rows.extend(whole)
            row = ''
        row += text
    if not items:
        row += tail
    return '\n'.join([*rows, row])


def broken(text: str, column: int) -> str:
    """A literal that begins at a column, on as many lines as it takes: what is in brackets stands under itself."""
    begin = next((place for place, each in enumerate(text) if each in '([{'), None)
    if column + len(text.rstrip()) <= WIDTH or begin is None:
        return text
    end = _closing(text, begin)
    parts = _parts(text[begin + 1:end])
    if len(parts) < 2 and '[' not in parts[0] and '(' not in parts[0] and '{' not in parts[0]:
        return text
    if len(parts) == 1 and text[begin] == '(' and text[begin + 1:end].rstrip().endswith(','):
        parts[0] += ','
    under = column + begin + 1
    inner = [broken(part, under) for part in parts]
    return text[:begin + 1] + wrapped(under, '', inner, text[end:])[under:]


def _closing(text: str, begin: int) -> int:
    depth, quote = 0, ''
    for place in range(begin, len(text)):
        each = text[place]
        if quote:
            quote = '' if each == quote and text[place - 1] != '\\' else quote
        elif each in '\'"':
            quote = each
        else:
            depth += (each in '([{') - (each in ')]}')
            if depth == 0:
                return place
    return len(text) - 1


def _parts(text: str) -> list[str]:
    """What stands between the outermost commas of a text."""
    parts, depth, quote, begin = [], 0, '', 0
    for place, each in enumerate(text):
        if quote:
            quote = '' if each == quote and text[place - 1] != '\\' else quote
        elif each in '\'"':
            quote = each
        else:
            depth += (each in '([{') - (each in ')]}')
            if each == ',' and depth == 0:
                parts.append(text[begin:place].strip())
                begin = place + 1
    return [*parts, text[begin:].strip()] if text[begin:].strip() else parts
