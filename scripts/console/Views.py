"""Commands that look at what one otherwise feels or hears, and for what is wrong in the level."""

from __future__ import annotations

from console.Session import Session, Wrong, command


@command('view', 'name', 'view')
def view(session: Session, line: str) -> str:
    """Draws what is otherwise felt or heard, as Light or Heard, or takes it away; without a name it lists them."""
    from editor.Views import views
    from editor.views.Onlooker import Onlooker
    onlooker = Onlooker.of(session.level)
    if not line:
        return '\n'.join('%-16s%s%s' % (each.name, '(on) ' if each.name in onlooker.shown else '', each.help)
                         for each in views.all())
    name = next((each.name for each in views.all() if each.name.lower() == line.lower()), line)
    try:
        return '%s is %s' % (name, 'on' if onlooker.switch(name) else 'off')
    except KeyError as error:
        raise Wrong(error.args[0]) from None


@command('lint')
def lint(session: Session, line: str) -> str:
    """Looks for what is wrong in the level as it stands: dark stretches, doors without keys, things that float."""
    from editor.lint import Findings
    found = [finding for finding in Findings.of(session.level) if not finding.reason]
    return '\n'.join(map(str, found)) or 'Nothing is wrong that is not meant'
