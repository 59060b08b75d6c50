"""The designer's layer over the native module, and the interpreter it runs in."""

import importlib
import json
import os
import random
import sys

import kaVel
from checks import raises


def test_MakeNamesPlacesAndConfiguresAnObject():
    parent = kaVel.make('Object', name='home')
    probe = kaVel.make('Probe', parent, 'dog', speed=4)
    assert probe.getParent() == parent and probe.name == 'dog' and probe.speed == 4.0
    with raises(AttributeError, "no member 'sped' in Probe; did you mean 'speed'?"):
        kaVel.make('Probe', sped=4)


def test_EveryReflectedClassIsThereByItsName():
    assert kaVel.Probe.name == 'Probe' and kaVel.Object.name == 'Object'
    with raises(AttributeError, "no class 'Prob'; did you mean 'Probe'?"):
        kaVel.Prob


def test_UnknownSystemNamesTheNearestClass():
    with raises(TypeError):
        kaVel.getSystem('NoSuchSystemAnywhere')


def test_PatternIsRememberedByItsObjectWithWhatAUserChanged():
    @kaVel.pattern
    def Dog(parent, name):
        return kaVel.make('Probe', parent, name)

    dog = Dog(kaVel.Handle(), 'rex')
    dog.setPropertyValue('speed', 3, True)
    dog.setPropertyValue('gait', 2, False)
    assert dog.pattern._editedProps == {'speed'} and dog.pattern.pattern is Dog
    assert kaVel.make('Probe').pattern is None


def test_LibraryModulesThatScriptsNeedCanBeImported():
    for name in ('collections', 'copy', 'dataclasses', 'difflib', 'enum', 'functools', 'io', 'itertools', 'json',
                 'math', 'os', 'pathlib', 'pickle', 'random', 're', 'string', 'time', 'traceback', 'unittest'):
        assert importlib.import_module(name).__name__ == name
    assert json.loads('{"a": [1, 2.5]}') == {'a': [1, 2.5]}
    assert os.path.exists('../scripts') and random.Random(1).random() == random.Random(1).random()


def test_InterpreterSeesNothingOfTheInstallation():
    assert not any('site-packages' in path or '/usr' in path for path in sys.path)
    assert sys.flags.isolated and sys.flags.no_site and sys.flags.utf8_mode


def test_SearchPathHasExactlyTheTwoDesignedEntries():
    assert sys.path == ['../scripts', '../python.zip']
