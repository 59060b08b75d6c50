"""Vec4 and Quaternion in scripts."""

import copy
import math
import pickle

from checks import raises
from kaVel import Quaternion, Vec4


def test_ComponentsHaveThreeNamesEach():
    v = Vec4(1, 2, 3, 4)
    assert (v.x, v.y, v.z, v.w) == (v.r, v.g, v.b, v.a) == (v.s, v.t, v.p, v.q) == (1, 2, 3, 4)
    v.g = 9
    assert v.y == v.t == 9
    assert Vec4() == Vec4(0, 0, 0, 0) and Vec4(x=1, w=2) == Vec4(1, 0, 0, 2) and Vec4(v) == v


def test_OperatorsWorkByComponent():
    a, b = Vec4(1, 2, 3, 4), Vec4(2, 2, 2, 0)
    assert a + b == Vec4(3, 4, 5, 4) and a - b == Vec4(-1, 0, 1, 4)
    assert a * b == Vec4(2, 4, 6, 0) and a * 2 == 2 * a == 2.0 * a == Vec4(2, 4, 6, 8)
    assert a.__rmul__(2) == a * 2 and a.__rmul__(b) == b * a
    assert a / 2 == Vec4(0.5, 1, 1.5, 2) and -a == Vec4(-1, -2, -3, -4)
    assert a == Vec4(1 + 1e-7, 2, 3, 4) and a != b and not a == 'a'
    a += b
    assert a == Vec4(3, 4, 5, 4)
    a -= b
    assert a == Vec4(1, 2, 3, 4)


def test_LengthsTakeAllFourComponentsAndDotThree():
    v = Vec4(1, 2, 2, 1)
    assert v.magnitudeSquared() == 10 and abs(v.magnitude() - math.sqrt(10)) < 1e-6 and v.dot(v) == 9
    assert Vec4(1, 0, 0).cross(Vec4(0, 1, 0)) == Vec4(0, 0, 1)
    v.normalize()
    assert abs(v.magnitude() - 1) < 1e-6
    v.x = 1e-7
    v.clamp()
    assert v.x == 0
    v.reset()
    assert v == Vec4()


def test_WrongTypesAreTypeErrors():
    for wrong in ('1', None, [], object()):
        for use in (lambda: Vec4(wrong), lambda: Vec4() + wrong, lambda: Vec4() * wrong, lambda: wrong - Vec4(),
                    lambda: setattr(Vec4(), 'x', wrong), lambda: Quaternion(wrong), lambda: Quaternion() * wrong):
            with raises(TypeError):
                use()
    with raises(AttributeError):
        Vec4().position


def test_TextsShowTheComponents():
    assert repr(Vec4(1, 2.5, 0, -1)) == 'Vec4(1, 2.5, 0, -1)' and str(Vec4()) == 'Vec4(0, 0, 0, 0)'
    assert repr(Quaternion()) == 'Quaternion(1, 0, 0, 0)'


def test_RotationIsMadeFromAxisOrDirection():
    q = Quaternion.fromAxisAngle(Vec4(0, 2, 0), math.pi)
    assert q == Quaternion(0, 0, 1, 0) and (q.r, q.j) == (q.r, 1.0)
    assert q * q.inverse() == Quaternion()
    q *= q.inverse()
    assert q == Quaternion(1, 0, 0, 0)
    up = Quaternion.fromDirectionWithAdaptingUpVector(Vec4(0, 1, 0))
    assert all(math.isfinite(part) for part in (up.r, up.i, up.j, up.k))


def test_CopiesAreIndependentAndValuesCannotBeKeys():
    v = Vec4(1, 2, 3)
    for other in (copy.copy(v), copy.deepcopy([v])[0], pickle.loads(pickle.dumps(v))):
        other.x = 9
    assert v.x == 1
    with raises(TypeError):
        {v: 1}
