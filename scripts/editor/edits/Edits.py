"""Edits of a level, each with its way back.

    edits = Edits.of(level)
    with edits.step('Move 3 things'):
        for piece in chosen:
            edits.change(piece, at=(1.2, 0, 3.4))
    edits.undo()

Whatever changes a level while its editor is open goes through here. What cannot be is told by `Refused`, and then the
whole step is taken back.
"""

from __future__ import annotations

import contextlib
import importlib
from typing import Any, Callable, Iterable, Protocol

import kaVel
from editor.edits import Address, Aside, Changes, Making
from editor.edits.Refused import Refused
from editor.source import Files, Literals, Merging, Parameters, Paths, Pieces, References
from editor.source.Pieces import Piece

#: More pieces than this are not added in one step: nobody means that, and it would take minutes.
MOST_ADDED = 20000


class Step:
    """What is undone at once."""

    def __init__(self, label: str):
        self.label = label
        self.changes: list[Changes.Change] = []
        self.added = 0


class Attendant(Protocol):
    """Hears what is done to a level past its edits."""

    def hear(self, on: bool) -> None: ...
    def note(self) -> None: ...


class LevelEdits:
    """The edits of one level, which can be undone and redone without end."""

    def __init__(self, pieces: Pieces.LevelPieces):
        self.pieces = pieces
        #: What was set of objects: (address, property) -> value.
        self.properties: dict[tuple[Address.Address, str], Any] = {}
        #: Those that the scripts set of what stands in the level now, since they were saved before it was loaded.
        self.written: set[tuple[Address.Address, str]] = set()
        #: The scripts as the level was made from them.
        self.texts = Files.Texts(pieces.levelName)
        self.texts.remember(pieces.files())
        self._steps: list[Step] = []
        self._done = 0
        self._open: Step | None = None
        self._listeners: list[Callable[[], object]] = []
        self._savedAt: Step | None = None
        self._texts: dict[Step | None, dict[str, str]] = {None: {}}  # of files, by the step that they were saved at
        #: How the files name pieces: as they were loaded, or saved since.
        self.paths = Paths.of(Paths.spotsOf(pieces.everyone()))
        self._paths: dict[Step | None, dict[Piece, str]] = {None: self.paths}  # by the step that they were saved at
        self._attendant: Attendant | None = None
        self.savedProperties: dict[tuple[Address.Address, str], Any] = {}

    # What is done

    def change(self, piece: Piece, **arguments: Any):
        """Gives a piece other arguments; those that are not named stay."""
        self._refuseLocked(piece)
        known = {each.name: each for each in Parameters.parametersOf(piece.pattern)}
        after = dict(piece.given)
        for name, value in arguments.items():
            if name not in known and not Parameters.takesAny(piece.pattern):
                raise Refused('%s has no parameter %r%s' % (piece.patternName, name,
                                                            kaVel.nearestHint(name, known)))
            after[name] = self._clean(name, value)
            isDefault = name in known and Literals.alike(after[name], known[name].default)
            if isDefault and name not in self._givenBySource(piece):
                del after[name]
        if after != piece.given:
            self._do('Change %s' % piece.name, Changes.Arguments(piece, after))

    @staticmethod
    def _givenBySource(piece: Piece) -> dict[str, Any]:
        return piece.source.given if piece.source else {}

    @staticmethod
    def _clean(name: str, value: Any) -> Any:
        try:
            return Literals.rounded(name, value)
        except Literals.NoLiteral as error:
            raise Refused('%s: %s' % (name, error)) from None

    def add(self, parent: Any, patternName: str, name: str = '', **arguments: Any) -> Piece:
        """Adds a piece below an object or a piece, under a name of its own where none is given.

        A pattern's name is that of the catalogue, or 'module.Name'.
        """
        above = parent.root if isinstance(parent, Piece) else parent
        if not above:
            raise Refused('what is to hold a new %s is gone' % patternName)
        try:
            pattern = Parameters.named(patternName)
        except LookupError as error:
            raise Refused(str(error.args[0])) from None
        if self._open and self._open.added >= MOST_ADDED:
            raise Refused('more than %d pieces in one step are too many' % MOST_ADDED)
        given = {each: self._clean(each, value) for each, value in arguments.items()}
        piece = self.pieces.make(pattern, name or self.freeName(above, patternName), given)
        self._do('Add %s' % piece.name, Changes.Adding(self, piece, above))
        return piece

    def freeName(self, parent: Any, patternName: str) -> str:
        """A name that no child of an object has: 'armchair', 'armchair2', ..."""
        short = patternName.rpartition('.')[2]
        base = short[:1].lower() + short[1:]
        if not parent.getChild(base):
            return base
        number = max(2, self._lastNumber.get((parent, base), 1) + 1)
        while parent.getChild('%s%d' % (base, number)):
            number += 1
        self._lastNumber[parent, base] = number
        return '%s%d' % (base, number)

    @property
    def _lastNumber(self) -> dict[Any, int]:
        """Numbers given to names in the step that is under way, so that a row of thousands is named in no time."""
        return self.__dict__.setdefault('_numbersGiven', {})

    def remove(self, pieces: Piece | Iterable[Piece]):
        """Takes pieces out of the level, with all that hangs below them."""
        chosen = [pieces] if isinstance(pieces, Piece) else list(pieces)
        for piece in chosen:
            self._refuseLocked(piece)
        if chosen:
            self._do('Remove %s' % _these(chosen), Changes.Removing(self, chosen))

    def rename(self, piece: Piece, name: str):
        """Gives a piece another name."""
        self._refuseLocked(piece)
        if not name or '/' in name or '#' in name or name != name.strip():
            raise Refused('%r is no name: it needs letters, and neither / nor #' % name)
        if name != piece.name:
            with self.step('Rename %s to %s' % (piece.name, name)):
                before, path = piece.name, piece.path
                isOnly = not any(each.name == before and each is not piece for each in self.pieces.all())
                self._do('', Changes.Renaming(piece, name))
                self._follow(path, piece.path)
                if isOnly:
                    self._follow(before, name)

    def _follow(self, before: str, after: str):
        """Has those that are told a piece by its name or path go on to mean it."""
        for piece in self.pieces.all():
            arguments = References.renamed(piece, before, after)
            if arguments:
                self._do('', Changes.Arguments(piece, {**piece.given, **arguments}))

    def reparent(self, piece: Piece, parent: Any):
        """Hangs a piece below another object or piece; None for the map that it stands in."""
        self._refuseLocked(piece)
        above = parent.root if isinstance(parent, Piece) else parent
        if above is None:
            above = piece.root.getAncestorOfType(kaVel.Reflection.MapRootEntity)
        if not above:
            raise Refused('there is nothing to hang %r below' % piece.name)
        entity = above
        while entity:
            if entity == piece.root:
                raise Refused('%r cannot hang below itself' % piece.name)
            entity = entity.parent
        if above != piece.parent:
            self._do('Hang %s below %s' % (piece.name, above.getName()), Changes.Reparenting(self, piece, above))

    def setProperty(self, handle: Any, name: str, value: Any, before: Any = None):
        """Sets a reflected property of any object of the level: a bar's change.

        `before` is what it was where the bar has set it already, as while a slider was dragged.
        """
        if not handle:
            raise Refused('the object whose %s is to be set is gone' % name)
        if not hasattr(handle, name):
            raise Refused('%s has no property %r' % (handle.getName(), name))
        self._do('Set %s of %s' % (name, handle.getName()), Changes.Property(self, handle, name, value, before))

    def mark(self, pieces: Iterable[Piece], name: str, value: Any):
        """Sets 'locked', 'hidden' or 'group' of pieces."""
        self._mark({'locked': 'Lock', 'hidden': 'Hide'}.get(name, 'Group'), pieces, name, value)

    def lock(self, pieces: Iterable[Piece], on: bool = True):
        """Locks pieces against changes, or lets go of them."""
        self._mark('Lock' if on else 'Unlock', pieces, 'locked', on)

    def hide(self, pieces: Iterable[Piece], on: bool = True):
        """Has pieces not be seen in the editor, which no script is told; or seen again."""
        self._mark('Hide' if on else 'Show', pieces, 'hidden', on)

    def group(self, pieces: Iterable[Piece], name: str = ''):
        """Puts pieces into a group, or out of any."""
        self._mark('Group' if name else 'Ungroup', pieces, 'group', name)

    def _mark(self, verb: str, pieces: Iterable[Piece], name: str, value: Any):
        chosen = [piece for piece in pieces if getattr(piece, name) != value]
        if chosen:
            with self.step('%s %s' % (verb, _these(chosen))):
                for piece in chosen:
                    self._do('', Changes.Mark(piece, name, value))

    @staticmethod
    def _refuseLocked(piece: Piece):
        if piece.locked:
            raise Refused('%r is locked' % piece.name)

    # Steps

    @contextlib.contextmanager
    def step(self, label: str):
        """Within it, all edits are one step; an exception takes back what was done of it."""
        if self._open:
            yield  # a step within a step is a part of it
            return
        with self._atWork():
            self._open = step = Step(label)
            self._lastNumber.clear()
            try:
                yield
            except BaseException:
                self._open = None
                self._takeBack(step.changes)
                self._forget(step)
                self._tell()
                raise
            self._open = None
            if step.changes:
                self._lookUpAgain(step.changes)
                for undone in self._steps[self._done:]:
                    self._forget(undone)
                self._steps[self._done:] = [step]
                self._done += 1
                self._tell()

    def attend(self, attendant: Attendant | None):
        """Has somebody hear what is done past the edits: he is asked for it before each, and hears nothing of them."""
        self._attendant = attendant

    @contextlib.contextmanager
    def _atWork(self):
        attendant, self._attendant = self._attendant, None
        if attendant:
            attendant.hear(False)
            attendant.note()
        try:
            yield
        finally:
            self._attendant = attendant
            if attendant:
                attendant.hear(True)

    def perform(self, label: str, change: Changes.Change):
        """Does a change of a kind of its own, as a step."""
        self._do(label, change)

    def lastChange(self) -> Changes.Change | None:
        """What the last step has changed, if that is one thing."""
        step = self._lastDone()
        return step.changes[0] if step and len(step.changes) == 1 else None

    def done(self, change: Changes.Change):
        """Makes a change that was done by somebody else a part of the step that is under way."""
        assert self._open
        self._open.changes.append(change)

    def _do(self, label: str, change: Changes.Change):
        with self.step(label):
            assert self._open
            change.do(self)
            self._open.changes.append(change)
            self._open.added += isinstance(change, Changes.Adding)

    def _takeBack(self, changes: list[Changes.Change]):
        for change in reversed(changes):
            change.undo(self)

    @staticmethod
    def _forget(step: Step):
        """Lets go of what a step has kept that is not done again."""
        for change in step.changes:
            change.forget()

    def undo(self) -> str:
        """Takes the last step back and says what it was; '' where there is none. Refused changes nothing."""
        if self._open:
            return ''
        with self._atWork():
            if not self._done:
                return ''
            step = self._steps[self._done - 1]
            self._through(list(reversed(step.changes)), 'undo', 'do')
            self._done -= 1
            self._tell()
            return step.label

    def redo(self) -> str:
        """Does again what was undone last and says what it was; '' where there is nothing."""
        if self._open:
            return ''
        with self._atWork():
            if self._done == len(self._steps):
                return ''
            step = self._steps[self._done]
            self._through(step.changes, 'do', 'undo')
            self._done += 1
            self._tell()
            return step.label

    def _through(self, changes: list[Changes.Change], way: str, back: str):
        """Does or undoes changes; where one is refused, those before it are turned back."""
        done: list[Changes.Change] = []
        try:
            for change in changes:
                getattr(change, way)(self)
                done.append(change)
        except Refused:
            for change in reversed(done):
                getattr(change, back)(self)
            raise
        self._lookUpAgain(changes)

    def _lookUpAgain(self, changes: list[Changes.Change]):
        """Has pieces be built anew that had looked up by name what has come, gone or another name."""
        names = {name for change in changes for name in Changes.namesIn(change)}
        for piece in References.takenAtLoad(self.pieces.all(), names) if names else ():
            try:
                Aside.discard(Making.rebuild(self.pieces, piece, self.properties))
            except Refused as error:
                kaVel.log(str(error))

    def history(self) -> list[str]:
        """What each step was, the oldest first; `position` of them are done."""
        return [step.label for step in self._steps]

    @property
    def position(self) -> int:
        return self._done

    def goTo(self, position: int):
        """Undoes or does again until so many steps are done."""
        wanted = max(0, min(position, len(self._steps)))
        while self._done > wanted:
            self.undo()
        while self._done < wanted:
            self.redo()

    @property
    def isSaved(self) -> bool:
        """Whether the scripts have all that was done."""
        return self._lastDone() is self._savedAt

    def begin(self, texts: Files.Texts):
        """Goes on with a level that was loaded anew, from other texts."""
        self.texts = texts
        self.texts.remember(self.pieces.files())
        self.paths = Paths.of(Paths.spotsOf(self.pieces.everyone()))
        self.written |= self.savedProperties.keys()
        self.properties = {key: value for key, value in self.properties.items()
                           if key not in self.savedProperties or self.savedProperties[key] != value}
        self.savedProperties = {}

    def setAgain(self):
        """Sets the properties again that were set and not saved."""
        for (address, name), value in list(self.properties.items()):
            handle, piece = Address.find(self.pieces, address), self.pieces.number(address[0])
            if handle:
                setattr(handle, name, value)
            elif not piece or not piece.removed:
                kaVel.log('%s was set of what is no more' % name)
                del self.properties[address, name]
        self._tell()

    def savedPaths(self) -> dict[Piece, str]:
        """How the scripts named pieces that had these texts."""
        return self._paths[self._lastDone()]

    def savedTexts(self) -> dict[str, tuple[str, str]] | None:
        """What the files are to have where the level is again as it was saved once, or first: whoever undoes wants his
        own lines back. Each comes with what it was given last; None where the level was never saved so.
        """
        known, last = self._texts.get(self._lastDone()), self._texts.get(self._savedAt)
        return None if known is None or last is None else {file: (last[file], text) for file, text in known.items()}

    def noteSaved(self, before: dict[str, str], after: dict[str, str]):
        """Notes that the scripts have all that was done by now, and what was written into which files."""
        last = dict(self._texts[self._savedAt])
        for file, text in before.items():
            for texts in self._texts.values():  # with what others have written meanwhile
                texts[file] = Merging.join(last[file], texts[file], text)[0] if file in last else text
        self._savedAt = self._lastDone()
        self._texts[self._savedAt] = {**last, **after}
        self.paths = self._paths[self._savedAt] = self.texts.paths
        removed = {piece.number for piece in self.pieces.everyone() if piece.removed}  # of which nothing was written
        self.savedProperties = {key: value for key, value in self.properties.items() if key[0][0] not in removed}
        for piece in self.pieces.everyone():
            piece.saved = None if piece.removed else (piece.name, dict(piece.given))
            piece.placed = None if piece.removed else (piece.above, piece.steps)
            if piece.removed and piece.aside and Aside.isThere(piece.aside):
                Aside.findTouches(self.pieces, piece.aside)  # the level will not stand anew with it
        self._tell()

    def _lastDone(self) -> Step | None:
        return self._steps[self._done - 1] if self._done else None

    # Who wants to know

    def onChange(self, listener: Callable[[], object]):
        """Calls a function without arguments after every edit, undo and redo; one that raises is told and dropped."""
        self._listeners.append(listener)

    def _tell(self):
        if self.pieces.level:  # maps are as large as what is left in them
            importlib.import_module('objects.house.MapSize').settle(self.pieces.level)
        for listener in list(self._listeners):
            try:
                listener()
            except Exception as error:
                self._listeners.remove(listener)
                kaVel.log('A listener to edits is dropped: %s' % error)


def _these(pieces: list[Piece]) -> str:
    return pieces[0].name if len(pieces) == 1 else '%d pieces' % len(pieces)


def of(level: kaVel.Coordinator) -> LevelEdits:
    """The edits of a level, those from before it was loaded anew among them."""
    pieces = Pieces.of(level)
    if pieces.edits is None:
        pieces.edits = LevelEdits(pieces)
    return pieces.edits
