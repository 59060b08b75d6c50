"""Lines of Python: what begins with > is one."""

from __future__ import annotations

import contextlib
import io
import traceback
from typing import Any

import kaVel
from console import Values
from console.Session import Session, Wrong, command


@command('>', 'Python', 'python')
def python(session: Session, line: str) -> str | None:
    """Runs a line of Python, which knows kaVel, place, level, player, it (what is selected) and at('path')."""
    names = namespace(session)
    said = io.StringIO()
    try:
        with contextlib.redirect_stdout(said):
            value = _run(line, names)
    except SyntaxError as error:
        raise Wrong('%s at column %d of: %s' % (error.msg, error.offset or 0, line)) from None
    except Exception as error:
        last = [frame for frame, _ in traceback.walk_tb(error.__traceback__)][-1]
        place = '' if last.f_code.co_filename == FILE else ' at %s:%d' % (last.f_code.co_filename, last.f_lineno)
        raise Wrong('%s%s' % (''.join(traceback.format_exception_only(error)).strip(), place)) from None
    if value is not None:
        names['_'] = value
        said.write(Values.show(value))
    return said.getvalue().rstrip() or None


FILE = '<console>'


def namespace(session: Session) -> dict[str, Any]:
    """What a line of Python knows: what lines before it have set, and the level as it is now."""
    import objects.GameObjects as place
    session.names.update(kaVel=kaVel, place=place, level=session.level, player=session.level.getChild('Player'),
                         it=session.start(), at=lambda path: Values.resolve(session, path), session=session)
    return session.names


def _run(line: str, names: dict[str, Any]) -> Any:
    """The value of an expression; None for a statement, which is run."""
    try:
        code = compile(line, FILE, 'eval')
    except SyntaxError:
        exec(compile(line, FILE, 'exec'), names)
        return None
    return eval(code, names)
