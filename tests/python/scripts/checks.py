"""What the script tests share."""

import _kaVelTest
import kaVel


class raises:
    """The block must raise an exception of this type, with this text if one is given."""

    def __init__(self, kind, text=None):
        self.kind, self.text = kind, text

    def __enter__(self):
        return self

    def __exit__(self, kind, error, traceback):
        assert kind is not None, 'nothing was raised, expected %s' % self.kind.__name__
        if not issubclass(kind, self.kind):
            return False
        shown = error.args[0] if error.args else ''
        assert self.text is None or shown == self.text, '%r is not the text %r' % (shown, self.text)
        return True


class quiet:
    """Gathers the texts of assertions that the block raises, in place of showing them."""

    def __enter__(self):
        _kaVelTest.gatherAssertions(True)
        return self

    def __exit__(self, kind, error, traceback):
        self.text = _kaVelTest.gatherAssertions(False)


def kill(handle):
    """Murders an object and buries it, so that its handle is dead."""
    handle.murder()
    kaVel.Reflection.cremateDeadObjects()
    assert not handle
