"""The children of an object: by name, in order, and of an object that is gone."""

import kaVel
from checks import kill, raises

DEAD = 'Attempt to locate children of a dead object'


def family():
    parent = kaVel.make('Object', name='parent')
    return parent, [kaVel.make('Object', parent=parent, name=name) for name in ('a', 'b', 'c')]


def test_WalkGivesTheChildrenInOrder():
    parent, children = family()
    assert list(parent.children) == children
    assert list(parent.children.itervalues()) == children
    assert len(parent.children) == 3


def test_ChildIsFoundByName():
    parent, (a, b, c) = family()
    assert parent.children['b'] == b
    assert 'b' in parent.children and parent.children.has_key('b')
    assert 'x' not in parent.children and not parent.children.has_key('x')


def test_EarlierOfTwoChildrenOfOneNameIsFound():
    parent, (a, b, c) = family()
    kaVel.make('Object', parent=parent, name='a')
    assert parent.children['a'] == a


def test_MissingChildIsNamedWithItsParent():
    parent, children = family()
    text = parent.toString() if hasattr(parent, 'toString') else repr(parent)[len('Handle<Object>('):-1]
    with raises(KeyError, 'Child x not found in ' + text):
        parent.children['x']


def test_IteratorEndsWithTheDesignedText():
    walk = iter(family()[0].children)
    assert [walk.next(), next(walk), walk.__next__()] and iter(walk) is not None
    with raises(StopIteration, 'Stop Iteration'):
        walk.next()
    with raises(StopIteration, 'Stop Iteration'):
        walk.next()


def test_DeadObjectRefusesEveryQuestion():
    parent, children = family()
    view, walk = parent.children, iter(parent.children)
    kill(parent)
    for question in (lambda: 'x' in view, lambda: view['x'], lambda: iter(view), lambda: view.itervalues(),
                     lambda: view.has_key('x'), lambda: len(view), lambda: next(walk), lambda: 'x' in parent.children):
        with raises(ValueError, DEAD):
            question()


def test_ChildrenThatLeaveDuringTheWalkShortenIt():
    parent, (a, b, c) = family()
    seen = []
    for child in parent.children:
        seen.append(child)
        kill(child)
    assert seen and all(not child for child in seen)


def test_ChildrenThatArriveDuringTheWalkWaitForTheNext():
    parent, children = family()
    for count, child in enumerate(parent.children):
        kaVel.make('Object', parent=parent, name='late')
    assert count == 2 and len(parent.children) == 6


def test_ChainThatNoStackHoldsIsMovedClimbedAndBuried():
    top, depth = kaVel.make('Object', name='top'), 200000
    end = top
    for _ in range(depth):
        end = kaVel.make('Object', parent=end)
    home = kaVel.make('Object', name='home')
    top.setParent(home)
    assert end.getDescendantByPath('../' * (depth + 1)) == home
    kill(home)
    assert not top and not end


def test_NameOfAnotherTypeIsATypeError():
    parent, children = family()
    for question in (lambda: 5 in parent.children, lambda: parent.children[0], lambda: parent.children.has_key(None)):
        with raises(TypeError):
            question()
