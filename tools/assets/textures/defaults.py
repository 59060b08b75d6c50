"""Stand-ins for maps that are not there."""

from field import Field
from picture import Picture


def flat():
    """The defaults of drawn objects that name no map: three files of their own names, one texel each.

    The renderer spares the filtering of a single texel.
    """
    return {
        "flatNormal": (Picture.flat(1, (128 / 255, 128 / 255, 1.0)), "A8R8G8B8"),
        "black": (Picture.flat(1, (0.0, 0.0, 0.0)), "A8R8G8B8"),
        "white": (Picture.flat(1, (1.0, 1.0, 1.0)), "A8R8G8B8"),
        "missing": (_checks(64, 8), "A8R8G8B8"),
    }


def _checks(n, squares):
    """Magenta and black: nothing that anybody would leave in a room."""
    lit = [(x * squares // n + y * squares // n) % 2 * 1.0 for y in range(n) for x in range(n)]
    return Picture([Field(n, lit), Field.constant(n, 0.0), Field(n, lit)])


def hollow():
    """What no light comes back from."""
    return {"Diffuse": (Picture.flat(1, (0.03, 0.03, 0.03)), "A8R8G8B8")}
