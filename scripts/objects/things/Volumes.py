"""Boxes that push what is in them. `ReverbZone` is how a box sounds, `TriggerArea` what happens in it."""

import kaVel
from objects.Placing import Triple, addVolume, placed


@kaVel.pattern
def ForceVolume(parent: kaVel.Object, name: str = '', at: Triple = (0, 0, 0), size: Triple = (2, 3, 2),
                turn: float = 0.0, way: Triple = (0, 1, 0), force: float = 30.0, whole: float = 0.0,
                damping: float = 0.1, spin: float = 0.0):
    """A box that pushes what is in it, as a draught or a shaft's wind; it stands on `at`.

    `way` is where to, in the box's own axes, `force` newtons: above 20 upwards it lifts whatever there is. The force is
    whole up to `whole` metres behind the middle, and falls off from there. `damping` is what a body keeps of its speed
    in a second, as a part of what it keeps elsewhere; `spin` is radians a second.
    """
    if not any(way):
        raise ValueError('way is (0, 0, 0): give it a direction, as (0, 1, 0) for upwards')
    if not all(0.05 <= side <= 1000 for side in size):
        raise ValueError('size is %r: give metres, 0.05 to 1000 each' % (size,))
    box = placed(parent, name, at=(at[0], at[1] + size[1] / 2, at[2]), turn=turn)
    addVolume(box, size, 'BV_NONE').isPartitioningDummy = True
    kaVel.addComponent(box, 'dummy', 'ForceVolumeComponent', forceDirection=kaVel.Vec4(*way, 0), forceMagnitude=force,
                       maxForceOffset=whole, dampingMultiplier=damping, maxAngularVelocity=spin)
    return box
