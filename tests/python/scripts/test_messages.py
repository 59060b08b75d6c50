"""Messages and post offices in scripts."""

import kaVel
from checks import kill, quiet, raises


def test_EveryMessageOfTheProgramIsKnownByName():
    assert kaVel.messageTypes['ProbeMessage'].name == 'ProbeMessage'
    assert kaVel.messageTypes['ProbeMessage'].qualifiedName == '<Message>'
    with raises(KeyError, "no message 'ProbeMesage'; did you mean 'ProbeMessage'?"):
        kaVel.subscribe('ProbeMesage', print)


def test_HandlerGetsTheTypeAndThePayload():
    heard = []
    handler = lambda message, *payload: heard.append((message, payload))
    kaVel.subscribe('ProbeMessage', handler)
    kaVel.send('ProbeMessage', 1, 'two')
    kaVel.PostOffice.submitMessage(kaVel.messageType('ProbeMessage'), kaVel.Vec4(3))
    kaVel.messageTypes['ProbeMessage']()
    assert heard == [(kaVel.messageType('ProbeMessage'), payload) for payload in ((1, 'two'), (kaVel.Vec4(3),), ())]


def test_SameHandlerTwiceIsOneSubscription():
    class Listener:
        count = 0

        def heard(self, message):
            self.count += 1

    listener = Listener()
    kaVel.subscribe('ProbeMessage', listener.heard)
    kaVel.subscribe('ProbeMessage', listener.heard)
    kaVel.send('ProbeMessage')
    assert listener.count == 1


def test_HandlerThatRaisesIsShownAndFallsOut():
    calls = []

    def broken(message):
        calls.append(message)
        raise LookupError('lost my keys')

    kaVel.subscribe('ProbeMessage', broken)
    with quiet() as log:
        kaVel.send('ProbeMessage')
        kaVel.send('ProbeMessage')
    assert len(calls) == 1
    assert 'lost my keys' in log.text and 'test_messages.py' in log.text and 'in broken' in log.text


def test_BoundMemberOfAnObjectIsAHandlerUntilTheObjectDies():
    probe = kaVel.make('Probe')
    kaVel.subscribe('ProbeValueMessage', probe.handleValueMessage)
    kaVel.send('ProbeValueMessage', 2.0)
    assert probe.value == 2.0
    kill(probe)
    kaVel.send('ProbeValueMessage', 2.0)


def test_WrongUseOfAnOfficeIsATypeError():
    message = kaVel.messageType('ProbeMessage')
    office = kaVel.PostOffice
    for use in (lambda: office.registerMessageHandler(message, None), lambda: office.registerMessageHandler(message, 5),
                lambda: office.registerMessageHandler(kaVel.Reflection.Probe, print), lambda: office.submitMessage(5),
                lambda: office.submitMessage(message, 1, 2, 3, 4), lambda: office.submitMessage(message, value=1)):
        with raises(TypeError):
            use()
