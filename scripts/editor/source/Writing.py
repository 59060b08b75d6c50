"""Writes what was edited back into the scripts of a level.

    print(Writing.diff(level))          # what would change, as a unified diff
    files = Writing.save(level)         # the files that were written

Only what an edit concerns is changed: comments, names and the rest of the layout stay. What cannot be traced to a line
goes to the level's file of changes (see `levelChanges`). A file that was changed by somebody else meanwhile gets both
changes, unless they touch the same lines.
"""

from __future__ import annotations

import ast
import contextlib
import difflib
import os
from typing import Any

import kaVel
import levelChanges
import mods
from editor.edits import Address, Edits
from editor.edits.Refused import Refused
from editor.source import Files, Literals, Merging, NewLevel, Paths
from editor.source.Adding import Adding, aboveFirst
from editor.source.Configuring import Configuring, canConfigure, configured
from editor.source.Files import Function, Script, Texts
from editor.source.Hanging import Hanging
from editor.source.Notes import Notes
from editor.source.Patches import Patches
from editor.source.Pieces import LevelPieces, Piece
from editor.source.Removing import Removing
from editor.source.Sites import Sites
from editor.source.Splices import Splices
from mods import Holding


class Plan:
    """The texts that the files of a level are to have."""

    def __init__(self, pieces: LevelPieces, properties: dict[Any, Any], texts: Texts):
        self._pieces, self._properties, self._texts = pieces, properties, texts
        self._splices: dict[str, Splices] = {}
        self._sites = Sites(pieces, texts)
        self._notes = Notes(pieces, texts.changes)
        self.before: dict[str, str] = {}
        self.after: dict[str, str] = {}
        self.paths: dict[Piece, str] = {}  # by which the scripts name pieces then
        self._make()

    def _make(self):
        everyone = self._pieces.everyone()
        changed = [piece for piece in everyone if piece.source and not piece.removed and piece.isChanged()]
        patches = self._patched(changed)
        gone = [piece for piece in everyone if piece.source and piece.removed]
        left = Removing(self._sites, self._splicesOf).write(gone)
        adding = Adding(self._pieces, self._sites, self._levelScript(), self._splicesOf)
        added = [piece for piece in everyone if not piece.source and not piece.removed]
        hung = self._hang(adding, [piece for piece in changed if piece.hangsElsewhere()], added,
                          {piece for piece, *_ in patches.refused} | set(left))
        aside = {piece for piece in added if adding.homeOf(piece, added).isAside}
        self._notes.follow(self._spots(set(gone) - set(left), patches.renamed(), hung, added, aside))
        for piece in left:
            # What is called below another one that goes, goes with it.
            if not Paths.isCalledBelow(piece, left, self._notes.spots):
                self._notes.removed(piece)
        self._note(patches, [*(piece for piece in changed if piece not in hung), *aside])
        self._configure(adding, {piece.number for piece in added})
        adding.write(added, self._properties)
        for splices in self._splices.values():
            self._put(splices.script.file, splices.script.text, splices.text())
        changes = levelChanges.fileOf(self._pieces.levelName)
        self._put(changes, self._texts.changes, self._notes.text(self._pieces.levelName))
        self.paths = self._notes.paths

    def _spots(self, deleted: set[Piece], renamed: set[Piece], hung: set[Piece], added: list[Piece],
               aside: set[Piece]) -> dict[Piece, Paths.Spot]:
        """Where the scripts will call for pieces."""
        spots = {piece: spot for piece, spot in self._notes.spots.items() if piece not in deleted}
        last = max((spot.order for spot in spots.values()), default=0) + 1
        for number, piece in enumerate([*hung, *aboveFirst(added)], last):
            name = piece.name if not piece.source or piece in renamed else piece.source.name
            above, steps = (None, Address.below(self._pieces.level, _mapOf(piece.root))) if piece in aside \
                else (piece.above, piece.steps)
            spots[piece] = Paths.Spot(above, steps, name, number)
        for piece in renamed - hung:
            spots[piece] = spots[piece]._replace(name=piece.name)
        return spots

    def _put(self, file: str, before: str, after: str):
        self.before[file], self.after[file] = before, after

    def _levelScript(self) -> Script:
        file = os.path.splitext(levelChanges.fileOf(self._pieces.levelName))[0] + '.py'
        script = self._texts.of(file)
        if script is None:
            raise Refused('%s is gone or no script any more: it cannot be written to' % Files.shown(file))
        return script

    def _splicesOf(self, script: Script) -> Splices:
        return self._splices.setdefault(script.file, Splices(script))

    def _patched(self, changed: list[Piece]) -> Patches:
        """Writes other arguments and names of pieces where their values stand."""
        patches = Patches(self._sites)
        patches.grant([each for piece in changed for each in _differences(piece)])
        for key, edit in patches.edits.items():
            splices = self._splicesOf(edit.script)
            if isinstance(key, tuple):
                splices.addArgument(key[0], key[1], edit.text)
            else:
                splices.replace(key, edit.text)
        return patches

    def _hang(self, adding: Adding, pieces: list[Piece], added: list[Piece], noted: set[Piece]) -> set[Piece]:
        """Writes other parents of pieces into their calls; gives those for which that is done.

        What has to be noted, or holds what has, keeps its place in the scripts, by which notes name it.
        """
        hanging = Hanging(self._pieces, self._sites, adding, self._splicesOf)
        owners = (self._pieces.number(address[0]) for address, _ in self._properties)
        noted = noted | {piece for piece in owners if piece}
        spots = self._notes.spots
        return {piece for piece in pieces if piece not in noted
                and not any(Paths.isCalledBelow(each, [piece], spots) for each in (*noted, *pieces))
                and not any(_hangsBelow(each, piece) for each in (*pieces, *added))
                and not self._notes.has(piece) and hanging.write(piece, added)}

    def _note(self, patches: Patches, changed: list[Piece]):
        """Notes other arguments, names and parents that stand nowhere."""
        for piece, name, value in patches.refused:
            self._notes.renamed(piece) if name == 'name' else self._notes.argument(piece, name, value)
        for piece in changed:
            if piece.hangsElsewhere() or not piece.source:
                self._notes.parent(piece)

    def _configure(self, adding: Adding, added: set[int]):
        """Writes what was set of objects behind the call that made them, or notes it."""
        seen: set[int] = set()
        for address, name in self._properties:
            piece = self._pieces.number(address[0]) if address[0] else None
            if address[0] in added or address[0] in seen:
                continue
            if piece is None:
                self._notes.property(address, name, self._properties[address, name])
                continue
            seen.add(piece.number)
            if not piece.removed:
                self._configurePiece(adding, piece)

    def _configurePiece(self, adding: Adding, piece: Piece):
        statement, variable = self._kept(adding, piece)
        for steps, values in configured(piece, self._properties).items():
            scope = self._sites.scopeOf(piece)
            if statement is not None and scope and variable and canConfigure(steps, values):
                Configuring(self._splicesOf(scope.script), statement, variable).write(steps, values)
                adding.imported(scope.script, 'kaVel')
                continue
            for name, value in values.items():
                self._notes.property((piece.number, steps), name, value)

    def _kept(self, adding: Adding, piece: Piece) -> tuple[ast.stmt | None, str]:
        """The statement that makes a piece and nothing else, and the name that it keeps it under from now on."""
        scope = self._sites.scopeOf(piece)
        if scope is None or scope.function is None or len(self._sites.through.get(scope.call, ())) != 1:
            return None, ''
        statement = scope.script.parent(scope.call)
        if isinstance(statement, ast.Expr) and (
                not isinstance(scope.script.parent(statement), (Function, ast.For))
                or any(not canConfigure(*each) for each in configured(piece, self._properties).items())):
            return None, ''
        name = adding.kept(piece, scope.script, scope.function, scope.call)
        return (statement, name) if name and isinstance(statement, ast.stmt) else (None, '')


def _differences(piece: Piece) -> list[tuple[Piece, str, Any]]:
    assert piece.source
    before, after = piece.source.given, piece.arguments
    found = [(piece, name, after[name]) for name in {**before, **piece.given}
             if name in after and not Literals.alike(before.get(name, _NOTHING), after[name])]
    return found + ([(piece, 'name', piece.name)] if piece.name != piece.source.name else [])


_NOTHING = object()


def _hangsBelow(piece: Piece, above: Piece) -> bool:
    return piece.above is not None and (piece.above is above or _hangsBelow(piece.above, above))


def _mapOf(root: Any) -> Any:
    return root.getAncestorOfType(kaVel.Reflection.MapRootEntity)


#: Where a level is saved that is no mod's: in the scripts that build it, as `mod` of the functions below.
OWN = ''


def targets(level: kaVel.Coordinator) -> list[str]:
    """Where a level can be saved: OWN, and the names of mods that change it or may.

    What a mod changes in a level is not written into the level's own scripts: these would have it for ever.
    """
    changing = levelChanges.changing(level.levelName)
    behind = [mod.name for mod in mods.behindLevel(level.levelName)]
    return behind[behind.index(changing[-1].name):] if changing else [OWN, *behind]


def diff(level: kaVel.Coordinator, mod: str = OWN) -> str:
    """What `save` would change in all files, as a unified diff; '' for nothing."""
    rows: list[str] = []
    for file, text in _wanted(level, mod).items():
        present = read(file)
        name = Files.shown(file)
        rows += difflib.unified_diff(present.splitlines(keepends=True), text.splitlines(keepends=True), 'a/' + name,
                                     'b/' + name)
    return ''.join(row if row.endswith('\n') else row + '\n\\ No newline at end of file\n' for row in rows)


def save(level: kaVel.Coordinator, mod: str = OWN) -> list[str]:
    """Writes all edits into the files that they concern, which it returns; Refused writes nothing.

    With a mod's name all goes into that mod, as what it changes in the level.
    """
    edits = Edits.of(level)
    wanted = {file: text for file, text in _wanted(level, mod).items() if text != read(file)}
    before = {file: read(file) for file in wanted}
    write(wanted)
    if not _isNoted(level, mod):
        _remember(edits.texts)
    edits.noteSaved(before, wanted)
    return list(wanted)


def write(wanted: dict[str, str]):
    """Gives files their texts, all or none of them; one that is to have none goes."""
    for file in wanted:
        if not Holding.mayWrite(file):
            raise Refused('%s cannot be written by this run: start it with ./play --savemods --mod NAME'
                          % Files.shown(file))
    prepared: list[tuple[str, str]] = []
    try:
        for file, text in wanted.items():
            prepared.append((_prepare(file, text), file))
        for temporary, file in prepared:
            os.replace(temporary, file)
    except OSError as error:
        raise Refused('%s cannot be written, and nothing was: %s'
                      % (Files.shown(error.filename2 or error.filename or ''), error.strerror)) from error
    finally:
        for temporary, _ in prepared:
            if os.path.exists(temporary):
                os.remove(temporary)
    for file, text in wanted.items():
        if not text:
            os.remove(file)
        _tellReloading(file)


def _prepare(file: str, text: str) -> str:
    """A file beside another one with the text that this is to have, safely on the disk."""
    if os.path.exists(file) and not os.access(file, os.W_OK):
        raise PermissionError(13, 'it may not be written to', file)
    temporary = os.path.join(os.path.dirname(file), '.%s.%d' % (os.path.basename(file), os.getpid()))
    # With the rights from the first: a run with mods has given up changing them.
    mode = os.stat(file).st_mode & 0o777 if os.path.exists(file) else 0o644
    try:
        os.makedirs(os.path.dirname(file), exist_ok=True)
        with contextlib.suppress(FileNotFoundError):
            os.remove(temporary)
        handle = os.open(temporary, os.O_WRONLY | os.O_CREAT | os.O_EXCL | os.O_CLOEXEC, mode)
        with os.fdopen(handle, 'w', encoding='utf-8', newline='') as stream:
            stream.write(text)
            stream.flush()
            os.fsync(stream.fileno())
    except OSError as error:
        with contextlib.suppress(OSError):
            os.remove(temporary)
        raise OSError(error.errno, error.strerror, file) from error
    return temporary


def _isNoted(level: kaVel.Coordinator, mod: str) -> bool:
    """Whether all edits of a level become notes: of a mod that changes it, or since it is data."""
    return mod != OWN or mods.isLevelData(level.levelName)


def _noted(level: kaVel.Coordinator, mod: str) -> dict[str, str]:
    """The file of changes with all edits as notes."""
    if mod not in targets(level):
        raise Refused('%s cannot be saved into %s' % (level.levelName, mod or 'its own files, which a mod changes'))
    edits, file = Edits.of(level), levelChanges.fileOf(level.levelName, mods.find(mod))
    notes = Notes(edits.pieces, read(file))
    for piece in edits.pieces.everyone():
        if piece.source is None:
            if not piece.removed:
                notes.placed(piece)
        elif piece.removed:
            notes.removed(piece)
        elif piece.isChanged():
            for each, name, value in _differences(piece):
                notes.renamed(each) if name == 'name' else notes.argument(each, name, value)
            if piece.hangsElsewhere():
                notes.parent(piece)
    for (number, steps), name in edits.properties:
        piece = edits.pieces.number(number) if number else None
        if not piece or not piece.removed:
            notes.property((number, steps), name, edits.properties[(number, steps), name])
    return {file: notes.text(level.levelName)}


def _wanted(level: kaVel.Coordinator, mod: str = OWN) -> dict[str, str]:
    """The text that each file is to have, with what others have written into it meanwhile."""
    if _isNoted(level, mod) or mod not in targets(level):
        return _noted(level, mod)
    edits = Edits.of(level)
    texts = edits.texts
    again = _again(edits)
    if again is not None:
        return again
    plan = Plan(edits.pieces, edits.properties, texts)
    wanted: dict[str, str] = {}
    troubles: list[str] = []
    texts.planned, texts.paths = plan.after, plan.paths
    for file, text in plan.after.items():
        known = texts.written.get(file, plan.before[file])
        present = read(file)
        merged, conflicts = Merging.join(known, text, present)
        troubles += ['%s:%d was changed by somebody else where your edits are' % (Files.shown(file), each.first)
                     for each in conflicts]
        wanted[file] = merged
    for file, text in texts.written.items():
        if file not in plan.after:  # what was saved of it has been undone since
            wanted[file] = Merging.join(text, texts.begun[file], read(file))[0]
    if troubles:
        raise Refused('; '.join(troubles))
    return wanted


def _again(edits: Edits.LevelEdits) -> dict[str, str] | None:
    """The texts that a level is to have which is as it was saved before; None for any other one."""
    known = edits.savedTexts()
    if known is None:
        return None
    wanted: dict[str, str] = {}
    for file, (last, text) in known.items():
        wanted[file], conflicts = Merging.join(last, text, read(file))
        if conflicts:
            return None  # somebody else has written there
    edits.texts.planned = {file: text for file, (_, text) in known.items()}
    edits.texts.paths = edits.savedPaths()
    return wanted


def _remember(texts: Texts):
    """Notes what the files were given, so that a later change of somebody else's is told from it."""
    for file in set(texts.written) - set(texts.planned):
        del texts.written[file]
    for file, text in texts.planned.items():
        script = texts.of(file) if file.endswith('.py') else None
        texts.begun.setdefault(file, script.text if script else texts.changes)
        texts.written[file] = text


def read(file: str) -> str:
    """The text of a file, '' for one that is not there; Refused where it cannot be read."""
    try:
        with open(file, encoding='utf-8', newline='') as stream:
            return stream.read()
    except FileNotFoundError:
        return ''
    except (OSError, UnicodeError) as error:
        raise Refused('%s cannot be read: %s' % (Files.shown(file), error)) from error


def _tellReloading(file: str):
    """Has a file not be taken anew that the editor has written itself: the level is as it says already."""
    try:
        import reloading  # type: ignore
        reloading.known(file)
    except (ImportError, AttributeError):
        pass


def newLevel(name: str) -> str:
    """Writes the script of a new level, a lit map to begin with, and returns its file."""
    file = NewLevel.file(name)
    try:
        os.replace(_prepare(file, NewLevel.text(name)), file)
    except OSError as error:
        raise Refused('%s cannot be written: %s' % (Files.shown(file), error.strerror)) from error
    return file
