"""What is shown for the two frames between two levels: nothing but black."""


def build(coordinator):
    """The renderer of a level without a camera draws only its cleared screen."""
    coordinator.getManager('graphics2')
