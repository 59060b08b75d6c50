"""Handles: the members of an object's class as attributes, and every way in which a call can fail."""

import copy
import pickle

import _kaVel
import kaVel
from checks import kill, raises


def probe(className='Probe', **properties):
    return kaVel.make(className, name='probe', **properties)


def test_CallReachesTheMember():
    p = probe()
    assert p.addValue(1.5) is None
    p.addValue(2)
    assert p.getValue() == 3.5 and p.value == 3.5


def test_PropertyReadsAndWritesThroughItsPair():
    p = probe(speed=2.5)
    assert p.speed == 2.5 and p.getSpeed() == 2.5
    p.speed = 3
    assert p.getSpeed() == 3.0


def test_FetchedMemberStaysBoundToItsObject():
    first, second = probe(), probe()
    add = first.addValue
    add(4.0)
    assert (first.value, second.value) == (4.0, 0.0)
    assert add == first.addValue and add != second.addValue and add.__self__ == first
    assert hash(add) == hash(first.addValue)


def test_StaticMemberIsCalledWithoutTheObject():
    assert probe().countOf('four') == 4


def test_DerivedTypeShowsInheritedMembersAndItsOwn():
    fast = probe('FastProbe', speed=1, boost=3)
    assert (fast.speed, fast.boost) == (1.0, 3)
    assert isinstance(fast, type(probe())) and isinstance(fast, _kaVel.Handle_)
    assert not hasattr(probe(), 'boost')
    assert {'speed', 'boost', 'addValue', 'children', 'setParent'} <= set(dir(fast))


def test_WhatIsNotPublicIsNoAttribute():
    assert not hasattr(probe(), 'countEdges')
    assert not hasattr(kaVel.make('GlobalConfigSystem'), 'systemStartup')


def test_OfOverloadsTheFirstIsCalled():
    interpolator = kaVel.make('InterpolatorComponent')
    interpolator.addInterpolator(probe(speed=1), 'speed', 3.0, 0.0)
    assert interpolator.interpolantCount == 1


def test_AParentThatCannotBeRaises():
    p, child = probe(), probe()
    child.setParent(p)
    with raises(RuntimeError, 'Call to Object::setParent failed: BAD_HANDLE: <No error description.>'):
        p.setParent(child)


def test_ValuesPassBothWaysUnchanged():
    p = probe()
    assert p.echoInt(-7) == -7 and p.echoDouble(0.1) == 0.1
    assert p.echoBool(True) is True and p.echoText('Wände') == 'Wände'
    assert p.echoVector(kaVel.Vec4(1, 2, 3, 4)) == kaVel.Vec4(1, 2, 3, 4)
    assert p.echoRotation(kaVel.Quaternion(0, 1, 0, 0)) == kaVel.Quaternion(0, 1, 0, 0)
    assert p.echoHandle(p) == p and type(p.echoHandle(p)) is type(p)
    assert p.echoVariant(None) is None and p.echoVariant([1]) == [1]
    assert p.echoReflector(kaVel.Reflection.Probe) == kaVel.Reflection.Probe
    assert p.echoReflector(None) is None


def test_NumbersConvertFreelyButTextDoesNot():
    p = probe()
    assert p.echoInt(3.7) == 3 and p.echoDouble(True) == 1.0 and p.echoBool(2) is True
    assert p.echoDouble(10 ** 30) == 1e30
    with raises(RuntimeError, 'Call to Probe::echoInt failed: CALL_FAILURE: WRONG_ARGUMENT_TYPE'):
        p.echoInt('3')
    with raises(RuntimeError, 'Call to Probe::echoInt failed: CALL_FAILURE: WRONG_ARGUMENT_TYPE'):
        p.echoInt(object())
    with raises(RuntimeError, 'Call to Probe::echoText failed: CALL_FAILURE: WRONG_ARGUMENT_TYPE'):
        p.echoText('\ud800')
    with raises(RuntimeError, 'Call to Probe::echoVector failed: CALL_FAILURE: WRONG_ARGUMENT_TYPE'):
        p.echoVector((1, 2, 3))
    with raises(RuntimeError, 'Call to Probe::echoHandle failed: CALL_FAILURE: WRONG_ARGUMENT_TYPE'):
        p.echoHandle(None)


def test_ExtremeNumbersGiveAValueOrAnErrorAndNeverACrash():
    p = probe()
    for number in (2 ** 63 - 1, -2 ** 63, 2 ** 64, -10 ** 40, float('inf'), float('-inf'), float('nan'), 1e308):
        for echo in (p.echoInt, p.echoDouble, p.echoBool, p.echoChar, p.addValue):
            try:
                echo(number)
            except RuntimeError as failure:
                assert 'WRONG_ARGUMENT_TYPE' in str(failure)


def test_WrongCountOfArgumentsIsRefused():
    p = probe()
    text = 'Call to Probe::addValue failed: CALL_FAILURE: WRONG_ARGUMENT_COUNT'
    for arguments in ((), (1, 2), (1, 2, 3, 4), (1, 2, 3, 4, 5, 6, 7)):
        with raises(RuntimeError, text):
            p.addValue(*arguments)
    assert p.addFour(1, 2, 3, 4) == 10


def test_KeywordArgumentsAreRefused():
    with raises(TypeError, 'Probe::addValue takes no keyword arguments'):
        probe().addValue(amount=1)


def test_MemberCalledThroughItsClassNeedsAHandleOfThatClass():
    addValue = kaVel.Reflection.Probe.addValue
    p = probe()
    addValue(p, 2.0)
    assert p.value == 2.0
    with raises(RuntimeError, 'Call to Probe::addValue failed: CALL_FAILURE: THIS_POINTER_ARG_NOT_A_HANDLE'):
        addValue(5, 2.0)
    with raises(RuntimeError):
        addValue(kaVel.make('Object'), 2.0)
    with raises(RuntimeError, 'Call to Probe::addValue failed: CALL_FAILURE: BAD_THIS_POINTER'):
        addValue(kaVel.Handle(), 2.0)


def test_DeadObjectRefusesCallsAndPropertiesByName():
    p = probe()
    add = p.addValue
    kill(p)
    text = 'Call to Probe::%s failed: CALL_FAILURE: BAD_THIS_POINTER'
    with raises(RuntimeError, text % 'addValue'):
        p.addValue(1)
    with raises(RuntimeError, text % 'addValue'):
        add(1)
    with raises(RuntimeError, text % 'getSpeed'):
        p.speed
    with raises(RuntimeError, text % 'setSpeed'):
        p.speed = 1
    with raises(RuntimeError, 'Call to Handle<Object>(<invalid>)._getType failed: CALL_FAILURE: BAD_THIS_POINTER'):
        p._getType()
    try:
        p.speed
    except RuntimeError as error:
        assert 'It was the Probe probe, gone in frame ' in error.__notes__[0], error.__notes__


def test_InvalidHandleRefusesEveryName():
    nobody = kaVel.Handle()
    assert not nobody and nobody == kaVel.Handle()
    with raises(RuntimeError, 'Call to Handle<Object>(<invalid>).speed failed: CALL_FAILURE: BAD_THIS_POINTER'):
        nobody.speed
    with raises(RuntimeError):
        nobody.speed = 1
    assert not hasattr(nobody, '__len__')


def test_UnknownNamesNameTheClassAndTheNearestMember():
    p = probe()
    with raises(AttributeError, "no member 'sped' in Probe; did you mean 'speed'?"):
        p.sped
    with raises(AttributeError, "no member 'sped' in Probe; did you mean 'speed'?"):
        p.sped = 3
    with raises(AttributeError, "no member 'zzzzzzzz' in Probe"):
        p.zzzzzzzz
    assert getattr(p, 'sped', 'nothing') == 'nothing'


def test_HalfAPropertyIsRefusedOnItsMissingSide():
    p = probe()
    with raises(AttributeError):
        p.secret
    p.secret = 4
    assert p.value == 4.0
    with raises(AttributeError):
        p.value = 1
    with raises(AttributeError):
        p.addValue = 1
    with raises(AttributeError):
        del p.speed
    assert p.value == 4.0


def test_PropertiesByNameGiveTheDesignedCodes():
    p = probe()
    read = 'Call to Object::getPropertyValue failed: %s: <No error description.>'
    write = 'Call to Object::setPropertyValue failed: %s: <No error description.>'
    with raises(RuntimeError, read % 'NO_SUCH_PROPERTY'):
        p.getPropertyValue('sped')
    with raises(RuntimeError, read % 'PROPERTY_NOT_READABLE'):
        p.getPropertyValue('secret')
    with raises(RuntimeError, write % 'PROPERTY_NOT_WRITABLE'):
        p.setPropertyValue('value', 1, False)
    p.setPropertyValue('speed', 2, False)
    assert p.getPropertyValue('speed') == 2.0


def test_CodeThatAMemberReturnsBecomesTheText():
    p = probe()
    with raises(RuntimeError, 'Call to Probe::failPlainly failed: MAP_DATA_ERROR: <No error description.>'):
        p.failPlainly()
    with raises(RuntimeError, 'Call to Probe::failWithValue failed: OUT_OF_BOUNDS: <No error description.>'):
        p.failWithValue()
    assert p.succeedWithValue() == 5


def test_MemberWithoutAnInvokerIsNotCallable():
    with raises(RuntimeError, 'Call to Probe::takePointer failed: NOT_CALLABLE: <No error description.>'):
        probe().takePointer(1)


def test_NativeExceptionArrivesAsOneOfTheScripts():
    with raises(RuntimeError, 'the probe broke'):
        probe().throwNative()


def test_TextThatIsNotUtf8IsAValueErrorWithItsCause():
    with raises(ValueError, 'An error occurred while converting the Variant to Python: '
                            'PYTHON_EXCEPTION: <No error description.>'):
        probe().brokenText
    try:
        probe().brokenText
    except ValueError as failure:
        assert isinstance(failure.__cause__, UnicodeDecodeError)


def test_CallWithoutResultGivesNone():
    assert probe().nothing is None


def test_EnumsComeAsNumbersAndGoAsNumberNameOrEnumerator():
    p = probe()
    gait = kaVel.Reflection.Probe.Gait
    p.gait = 2
    assert p.gait == 2 and p.gait == gait.WALKS
    p.gait = gait.RUNS
    assert p.gait == 7
    p.gait = 'STANDS'
    assert p.gait == 0
    with raises(RuntimeError, 'Call to Probe::setGait failed: CALL_FAILURE: WRONG_ARGUMENT_TYPE'):
        p.gait = 'FLIES'


def test_HandlesAreEqualByObjectAndHashAlike():
    p = probe()
    same = p.echoHandle(p)
    assert p == same and not p != same and hash(p) == hash(same) and len({p, same}) == 1
    assert p != probe() and p != 5 and p != None  # noqa: E711 - the operator is what is tried


def test_HandleShowsItsClassAndItsObject():
    p = probe()
    assert repr(p).startswith('Handle<Probe>(<probe: Probe instance at 0x')
    kill(p)
    assert repr(p) == 'Handle<Object>(<invalid>)'


def test_CopiedHandleIsTheHandleAndIsNeverPickled():
    p = probe()
    kept = copy.deepcopy({'hero': p})
    assert kept['hero'] == p and copy.copy(p) == p
    with raises(TypeError):
        pickle.dumps(p)


def test_ReflectedTypeCannotBeChangedByAScript():
    with raises(TypeError):
        type(probe()).speed = 5
    assert probe(speed=1).speed == 1.0


def test_MembersTellTheirCommentAndSignature():
    p = probe()
    assert p.addValue.__doc__ == 'Adds to the value.'
    assert p.addValue.__name__ == 'addValue' and p.addValue.__qualname__ == 'Probe::addValue'
    assert repr(p.addValue).startswith('<bound function Probe::addValue(float amount) of Handle<')


def test_DescriptorUsedOnAnotherObjectIsHarmless():
    members = type(probe()).__dict__
    assert members['speed'].__get__(5, int) is members['speed']
    with raises(AttributeError):
        members['speed'].__set__(5, 1)
    with raises(RuntimeError):
        members['addValue'](5, 1)
