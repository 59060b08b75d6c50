"""What the Caller looks like."""

import kaVel


def wisp() -> kaVel.MeshBuilder:
    """A drop of 1 m, its point up: scale it down."""
    mesh = kaVel.MeshBuilder()
    mesh.addSphere(0.5, 12, 8)
    mesh.addSphere(0.3, 10, 6, at=kaVel.Vec4(0, 0.45, 0, 1))
    mesh.addSphere(0.12, 8, 6, at=kaVel.Vec4(0, 0.78, 0, 1))
    return mesh
