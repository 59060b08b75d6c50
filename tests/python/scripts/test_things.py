"""Reflected things: classes, functions, enums and enumerators by name."""

import copy
import operator

import _kaVel
import kaVel
from checks import raises

Reflection = kaVel.Reflection


def test_ClassTellsItsNamesAndBases():
    fast = Reflection.FastProbe
    assert fast.name == 'FastProbe' and fast.addValue.qualifiedName == 'Probe::addValue'
    assert fast.isSubclassOf(Reflection.Probe) and fast.isSubclassOf(fast)
    assert not Reflection.Probe.isSubclassOf(fast)
    with raises(TypeError):
        fast.isSubclassOf('Probe')


def test_MemberIsAnAttributeOrNone():
    assert Reflection.Probe.getMember('addValue') == Reflection.Probe.addValue
    assert Reflection.Probe.getMember('adValue') is None
    with raises(AttributeError, "no member 'adValue' in Probe; did you mean 'addValue'?"):
        Reflection.Probe.adValue
    with raises(TypeError):
        Reflection.Probe.getMember(5)
    assert 'addValue' in dir(Reflection.Probe)


def test_ObjectIsConstructedInTheCategoryGiven():
    before = _kaVel.defaultAllocationCategory.objectCount
    made = [Reflection.Probe.construct_(), Reflection.Probe.construct_(_kaVel.defaultAllocationCategory)]
    assert all(made) and made[0]._getType() == Reflection.Probe
    assert _kaVel.defaultAllocationCategory.objectCount == before + 2
    for refused in (5, None):
        with raises(TypeError):
            Reflection.Probe.construct_(refused)


def test_WhatHasNoObjectsConstructsAnInvalidHandle():
    assert not Reflection.AbstractProbe.construct_()
    assert not Reflection.Probe.addValue.construct_()
    with raises(TypeError):
        kaVel.make('AbstractProbe')


def test_WhatIsNoFunctionIsNotCallable():
    with raises(RuntimeError, 'Call to Probe failed: NOT_CALLABLE: <No error description.>'):
        Reflection.Probe()
    with raises(RuntimeError):
        Reflection.Probe(1, 2, 3, 4, 5, 6)
    with raises(TypeError):
        Reflection.Probe.addValue(amount=1)


def test_EnumeratorIsItsNumber():
    walks = Reflection.Probe.Gait.WALKS
    assert walks == 2 and 2 == walks and walks != 3 and int(walks) == 2 and operator.index(walks) == 2
    assert {2: 'walks'}[walks] == 'walks' and 'abcd'[walks] == 'c'
    with raises(TypeError, 'Probe is no enumerator'):
        int(Reflection.Probe)


def test_RegisterKnowsClassesByName():
    assert 'Probe' in Reflection and Reflection.has_key('Probe')
    assert 'NoSuchClass' not in Reflection and not Reflection.has_key('NoSuchClass')
    with raises(AttributeError, "no class 'Proobe'; did you mean 'Probe'?"):
        Reflection.Proobe
    with raises(TypeError, "no class 'Proobe'; did you mean 'Probe'?"):
        kaVel.make('Proobe')
    assert not hasattr(Reflection, '__wrapped__')


def test_ScriptClassIsFoundByModuleAndNativeClassHidesIt():
    assert getattr(Reflection, 'kaVel.BuiltFrom').name == 'BuiltFrom'
    assert getattr(Reflection, 'kaVel::BuiltFrom').qualifiedName == 'kaVel::BuiltFrom'
    assert 'kaVel.make' not in Reflection and 'no.such.module.Name' not in Reflection and '' not in Reflection
    import __main__
    __main__.Probe = __main__.OnlyOfScripts = type('Probe', (), {})
    assert Reflection.Probe.construct_() and 'OnlyOfScripts' in Reflection


def test_ThingsAreEqualByWhatTheyStandForAndCopyToThemselves():
    thing = Reflection.Probe
    assert thing == Reflection.Probe and hash(thing) == hash(Reflection.Probe) and thing != Reflection.Object
    assert copy.deepcopy([thing])[0] == thing and copy.copy(thing) is thing
    with raises(TypeError):
        type(thing)()


def test_ErrorsOfTheModuleAreTypeErrorsNeverCrashes():
    for wrong in (None, 5, 'text', object(), [], kaVel.Handle()):
        for function in (kaVel.Vec4(1, 2, 3).cross, kaVel.Quaternion().update, kaVel.PostOffice.registerMessageHandler,
                         kaVel.PostOffice.submitMessage, _kaVel._ReflectionInstance):
            with raises(TypeError):
                function(wrong)
    with raises(TypeError):
        _kaVel.writeLog(5)
    with raises(TypeError):
        _kaVel.OutputDebugString(None)
