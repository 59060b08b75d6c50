"""The one way in which the generator gives up."""


class ReflectionError(Exception):
    """A source that cannot be reflected; the text names place, cause and remedy."""

    def __init__(self, place, text):
        super().__init__(f"{place}: error: {text}")
