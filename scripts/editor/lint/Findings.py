"""The findings of a level: the rules that make them, and what a level excepts."""

from __future__ import annotations

import fnmatch
import importlib
import json
import sys
from typing import Any, Callable, Iterator, NamedTuple

import kaVel
from editor.lint.Scene import Scene
from objects.Placing import Triple

#: Modules of this package with rules, in the order of what they find.
RULES = ('Ways', 'Doors', 'Things', 'Lights', 'Sounds')


class Finding(NamedTuple):
    """One thing that is wrong: its kind, where, whose it is, what it is, and what helps."""

    kind: str
    path: str     # of the object below its level; of the map and the place for what is no object
    at: Triple | None
    what: str
    remedy: str
    file: str = ''  # below the folder of scripts, empty where no script is known to have built it
    line: int = 0
    reason: str = ''  # why the level excepts it; empty for one that counts

    def __str__(self):
        place = self.file + (':%d' % self.line if self.line else '') + ': ' if self.file else ''
        at = ' at (%.1f, %.1f, %.1f)' % self.at if self.at else ''
        return '%s%s: %s%s: %s; %s' % (place, self.kind, self.path, at, self.what, self.remedy)


Rule = Callable[[Scene], Iterator[Finding]]

_rules: list[Rule] = []


def rule(find: Rule) -> Rule:
    """Enters a rule, which goes through a level and yields what it finds."""
    if not any(each.__module__ == find.__module__ and each.__name__ == find.__name__ for each in _rules):
        _rules.append(find)
    return find


def of(level: kaVel.Coordinator) -> list[Finding]:
    """All findings of a level, those that it excepts with their reason."""
    for name in RULES:
        importlib.import_module('editor.lint.' + name)
    scene = Scene(level)
    try:
        found = [located(scene, finding) for each in _rules for finding in each(scene)]
    finally:
        scene.end()
    return list(_excepted(scene, found))


def located(scene: Scene, finding: Finding) -> Finding:
    """A finding with the script and line that its object came from."""
    file, line = scene.originOf(finding.path)
    return finding._replace(file=file, line=line)


def _excepted(scene: Scene, found: list[Finding]) -> Iterator[Finding]:
    """The findings with what the level says of them, and one more for each exception that meets nothing any more."""
    given = exceptionsOf(scene.level)
    used: set[tuple[str, str]] = set()
    for finding in found:
        pattern = next((each for each in given.get(finding.kind, ()) if fnmatch.fnmatchcase(finding.path, each)), None)
        if pattern is not None:
            used.add((finding.kind, pattern))
            finding = finding._replace(reason=given[finding.kind][pattern])
        yield finding
    for kind, patterns in given.items():
        for pattern in patterns:
            if (kind, pattern) not in used:
                yield Finding('exception', pattern, None, 'the level excepts %r here, and nothing is found' % kind,
                              'take it out of LINT', scene.file)


def exceptionsOf(level: kaVel.Coordinator) -> dict[str, dict[str, str]]:
    """What the module of a level excepts: kind -> path of objects, which may have * in it -> reason."""
    module = sys.modules.get('levels.' + level.levelName)
    return getattr(module, 'LINT', {})


def write(level: kaVel.Coordinator, file: str):
    """Writes the findings of a level to a file, as JSON."""
    told: dict[str, Any] = {'level': level.levelName, 'findings': [each._asdict() for each in of(level)]}
    with open(file, 'w', encoding='utf-8') as out:
        json.dump(told, out)
