"""All that a player reads, by key and in his language: the one place of it.

    import words

    words.text('menu.resume')                    # 'Resume'
    words.text('saves.at', place='the landing')  # "At {place}" with its value
    words.count('notebook.bolts', 3)             # the form for this number: '3 iron bolts'
    words.keyName('Shift')                       # 'Umschalt', where one reads German
    words.said('keys.taken', what=label)         # a text that is asked for when it is shown, and anew when it changes

The texts stand in the tables beside this file, one a language: `english.py` is the first one, and stands in wherever
another one has a hole or a fault. A new language is a new file. `tools/words/check.py` tells what a table lacks.

A text that stands on the screen for long is asked for anew when `changes` has become another number.
"""

from __future__ import annotations

import locale
import os
from typing import Union

import GameConfig
import kaVel
from words import Tables
from words.Tables import CODE, FIRST, NAME, Table

#: What stands for the language of the player's system.
AUTOMATIC = 'automatic'

#: The game's own font, and the plain one, whose letters are so much larger at the same size.
FONT, READABLE, READABLE_SIZE = 'LindenHill.otf', 'Andika-Regular.ttf', 0.78

#: Name of the table that is read just now, as 'german'.
language = FIRST

#: How often the texts have become others since the start.
changes = 0

#: Which form a number takes, by the rule that a table names under 'language.plural'.
_RULES = {
    'one': lambda number: 'one' if number == 1 else 'other',
    'zeroAndOne': lambda number: 'one' if 0 <= number <= 1 else 'other',
    'slavic': lambda number: ('other' if number % 1 else 'one' if number % 10 == 1 and number % 100 != 11
                              else 'few' if 2 <= number % 10 <= 4 and not 12 <= number % 100 <= 14 else 'many'),
    'none': lambda number: 'other',
}

_tables: dict[str, Table] = {}
_told: set[str] = set()
_chosen = AUTOMATIC
_plain = False


class Said:
    """A text by its key and values, which reads in the language of the moment: `str(said)`.

    Values may be such texts themselves, or anything else that says what it is by then.
    """

    def __init__(self, key: str, values: dict[str, object]):
        self.key, self.values = key, values

    def __str__(self):
        return text(self.key, **self.values)

    def __repr__(self):
        return 'words.said(%r)' % self.key


#: What the key of a text begins with, where it stands in a file in the text's place.
_BY_KEY = '@'

#: What is shown to a player: a text of the tables, or one that stands as it is, as of a level that is only tried.
Told = Union[str, Said]


def said(key: str, /, **values: object) -> Said:
    """The text of a key for whoever shows it: in the language of that moment, whenever it is."""
    return Said(key, values)


def kept(told: Told) -> str:
    """A text for a file that outlives the language of the moment, see `ofKept`; one with values as it reads now."""
    return _BY_KEY + told.key if isinstance(told, Said) and not told.values else str(told)


def ofKept(text: str) -> Told:
    """What `kept` has made a text of."""
    return Said(text[len(_BY_KEY):], {}) if text.startswith(_BY_KEY) else text


def text(key: str, /, **values: object) -> str:
    """The text of a key in the player's language, with its values; the key itself where no table has it."""
    _begin()
    template = _template(key)
    if template is None:
        if key:
            _tell('no table of scripts/words has a text for %r; the key is shown' % key)
        return key
    try:
        return template.format(**values) if '{' in template or '}' in template else template
    except KeyError as missing:
        _tell('the text %r is asked for without its value %s' % (key, missing))
        return template


def prepare():
    """Has the tables read, so that no frame of a level has to, in which the first text of it is shown."""
    has('')


def has(key: str) -> bool:
    """Whether there is a text of this key, if only in the first language."""
    _begin()
    return _template(key) is not None


def count(key: str, amount: float, /, **values: object) -> str:
    """The text of a key in the form for a number, which is its value {count}: of `key.one`, `key.other`, ..."""
    _begin()
    rule = _RULES.get(_template('language.plural') or '', _RULES['one'])
    form = '%s.%s' % (key, rule(abs(amount)))
    own = _tables[language].texts
    if form not in own:
        form = key + '.other' if key + '.other' in own else '%s.%s' % (key, _RULES['one'](abs(amount)))
    return text(form, count=number(amount), **values)


def languages() -> dict[str, str]:
    """The languages that there are: what each calls itself, by its code; the first language comes first."""
    found = {}
    for name in Tables.names():
        texts = _tableOf(name).texts
        if CODE in texts:
            found[texts[CODE]] = texts.get(NAME, name)
    return found


def code() -> str:
    """The code of the language that is read just now, as 'de'."""
    return text(CODE)


def setLanguage(code: str):
    """Has all texts be of a language from now on, told by its code, or of the system's (`AUTOMATIC`).

    One that there is not is as `AUTOMATIC`. The tables are read anew from their files.
    """
    global _chosen
    _chosen = code
    readAgain()


def readAgain():
    """Reads the tables anew from their files, as after one was changed."""
    global changes
    _tables.clear()
    changes += 1


def isRead(name: str) -> bool:
    """Whether a table has been read, by its name, as 'german'."""
    return name in _tables


def faultsOf(name: str) -> list[str]:
    """What is wrong with a table as its file stands now, as sentences; those in use stay as they were read."""
    table = Tables.read(name)
    return (table if name == FIRST else Tables.compared(table, Tables.read(FIRST))).faults


def number(value: float, digits: int | None = None) -> str:
    """A number as the language writes it, with so many digits after the mark; as many as it needs without."""
    plain = '%.*f' % (digits, value) if digits is not None else ('%.6f' % value).rstrip('0').rstrip('.')
    sign, plain = ('\N{MINUS SIGN}', plain[1:]) if plain.startswith('-') else ('', plain)
    whole, _, part = plain.partition('.')
    groups = []
    while len(whole) > 3 and (groups or len(whole) > 4):
        whole, group = whole[:-3], whole[-3:]
        groups.insert(0, group)
    shown = text('language.thousands').join([whole, *groups])
    return sign + (shown + text('language.decimal') + part if part else shown)


def percent(part: float) -> str:
    """A part of one in hundredths, as '40 %'."""
    return text('language.percent', number=number(round(part * 100)))


def date(year: int, month: int, day: int) -> str:
    """A day as the language writes it, as '8 January 1911'."""
    return text('language.date', day=day, month=text('language.month.%d' % month), year=year)


def time(hour: int, minute: int) -> str:
    """A time of day, as '21:05'."""
    return text('language.time', hour='%02d' % hour, minute='%02d' % minute)


def duration(seconds: float) -> str:
    """How long something took, in minutes, and hours where there are some."""
    minutes = int(seconds) // 60
    if minutes < 60:
        return count('language.minutes', minutes)
    return text('language.hours', hours=number(minutes // 60), minutes='%02d' % (minutes % 60))


def font() -> str:
    """The font that texts are read in: the game's own, or the plain letters that the player asked for."""
    return READABLE if _plain else FONT


def fontSize(size: float) -> float:
    """A size of letters that reads as large in the font of the moment as this one in the game's own."""
    return size * READABLE_SIZE if _plain else size


def setReadable(plain: bool):
    """Has all texts be in plain letters, or in the game's own."""
    global _plain, changes
    if plain != _plain:
        _plain = plain
        changes += 1


def keyName(name: str) -> str:
    """What a key or a button of `bindings` is called in the language, as 'Leertaste' for 'Space'."""
    return text('key.' + name) if has('key.' + name) else name


def padName(name: str) -> str:
    """What a pad's button of `bindings` is called in the language."""
    return text('pad.' + name) if has('pad.' + name) else name


def _begin():
    """Reads the first language and the player's, where they are not read yet."""
    global language
    if FIRST in _tables and language in _tables:
        return
    language = FIRST
    _tableOf(FIRST)
    language = _wanted()
    _tellFaults(language)


def _wanted() -> str:
    """Name of the table that is to be read."""
    named = {_tableOf(name).texts.get(CODE, ''): name for name in reversed(Tables.names())}
    if _chosen in named:
        return named[_chosen]
    if GameConfig.language in named:
        return named[GameConfig.language]
    own = '' if GameConfig.headless else _system()
    return named.get(own, FIRST)


def _system() -> str:
    """The code of the system's language, as its environment tells it."""
    said = next((os.environ[name] for name in ('LC_ALL', 'LC_MESSAGES', 'LANG') if os.environ.get(name)), '')
    return locale.normalize(said).partition('_')[0].lower()


def _tableOf(name: str) -> Table:
    if name not in _tables:
        table = Tables.read(name)
        _tables[name] = table if name == FIRST else Tables.compared(table, _tableOf(FIRST))
    return _tables[name]


def _tellFaults(name: str):
    """Tells what is wrong with a language, and with one that cannot be read at all, where nobody would see it."""
    for each in Tables.names():
        if each in (FIRST, name) or not _tableOf(each).texts:
            for fault in _tableOf(each).faults:
                _tell('%s. English stands in.' % fault)


def _template(key: str) -> str | None:
    found = _tables[language].texts.get(key)
    return _tables[FIRST].texts.get(key) if found is None else found


def _tell(fault: str):
    """Tells of a fault, once a run."""
    if fault not in _told:
        _told.add(fault)
        kaVel.log('Words: ' + fault)
