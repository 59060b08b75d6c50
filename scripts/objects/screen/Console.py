"""The console of a level: a command line over the picture."""

from __future__ import annotations

import bindings
import kaVel
from objects.things.Drawn import Anchor

FONT = 'Inconsolata.otf'
PAPER, CANDLE, FADED = (0.84, 0.80, 0.70, 1), (0.98, 0.78, 0.46, 1), (0.62, 0.58, 0.50, 1)
ERROR, WARNING = (0.98, 0.42, 0.32, 1), (0.96, 0.74, 0.30, 1)

#: The texts of the console: name, colour, and which of their points lies on their place.
TEXTS: tuple[tuple[str, tuple[float, float, float, float], Anchor], ...] = (
    ('EntText', PAPER, ('H_LEFT', 'V_BOTTOM')),
    ('Errors', ERROR, ('H_LEFT', 'V_BOTTOM')),
    ('Warnings', WARNING, ('H_LEFT', 'V_BOTTOM')),
    ('Prompt', FADED, ('H_LEFT', 'V_CENTER')),
    ('EntText2', CANDLE, ('H_LEFT', 'V_CENTER')),
    ('Watch', PAPER, ('H_RIGHT', 'V_TOP')),
    ('Ways', FADED, ('H_LEFT', 'V_TOP')),
)
QUADS = ('EntQuad', 'EntQuad2', 'WaysQuad')


@kaVel.pattern
def Console(parent: kaVel.Coordinator, name: str = ''):
    """A level's console, which its key opens; it belongs below the coordinator, under the name 'Console'."""
    entity = kaVel.make('Entity', parent=parent, name=name or 'Console')
    for quad in QUADS:
        kaVel.addComponent(_part(entity, quad), 'graphics2', 'QuadComponent2', layer='SCREEN_DEBUG', visible=False)
    for text, color, anchor in TEXTS:
        kaVel.addComponent(_part(entity, text), 'graphics2', 'TextComponent2', layer='SCREEN_DEBUG',
                           visible=text == 'Watch', fontName=FONT, color=kaVel.Vec4(*color),
                           text='>' if text == 'Prompt' else '',
                           horizontalAnchorPoint=anchor[0], verticalAnchorPoint=anchor[1])
    console = kaVel.addComponent(entity, 'console', 'ConsoleComponent')
    for key in bindings.keysOf('console'):
        console.addBinding(key, 'console')
    return entity


def _part(console: kaVel.Entity, name: str) -> kaVel.Entity:
    entity = kaVel.make('Entity', parent=console, name=name)
    kaVel.addComponent(entity, 'transform', 'TransformComponent')
    return entity
