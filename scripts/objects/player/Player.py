"""The player in the first person, what he carries, and what the screen shows of it.

    player = place.Player(coordinator, at=(2, 0, 3), turn=90)
    place.Hud(coordinator)
    place.Flashlight(map, at=(3, 0.8, 3))

W, A, S and D walk, Shift runs, Ctrl crouches, Q and C lean, the mouse looks, E, Space and its left button use what the
reticle opens over, F switches the flashlight, R changes its battery. F7 leaves the body for a camera that flies.
"""

import math
from typing import Any

import kaVel
import settings
from objects.creatures.Creatures import shaped
from objects.Placing import Triple, addVolume, cube, placed, turned
from objects.player.Carrying import keepThrownBolts, throwBolt
from objects.player.Hands import hands
from objects.player.Life import lifeOf
from objects.player.Nerves import nerves
from objects.player.Pad import pad
from objects.player.Pockets import pockets
from objects.player.Visitor import Visitor
from objects.screen import Captions
from objects.screen.Marks import marked
from objects.sound.Sounds import sounds
from objects.sound.Sounds import STEPS as FLOOR_SOUNDS
from objects.things.Bodies import PULL
from objects.things.Drawn import Picture, Text
from perLevel import levelOf
from saves.Game import attend
from saves.Kept import keepPart

SIZE = (0.5, 1.75, 0.5)  # metres
EYE = 1.62               # above the feet, metres

#: What the sounds of feet may be of: `PlayerComponent.floorMaterial`.
FLOORS = ('Carpet', 'Earth', 'Metal', 'Snow', 'Stone', 'Tile', 'Wood')
STEPS = ['Step%s%s' % (floor, gait) for floor in FLOORS for gait in ('Walk', 'Run', 'Crouch')]

MASS = 75.0     # kilograms
PUSH = 7.0      # newtons of a step for each of them
FALL = 15.0     # m/s2
# Such a step against this damping is 1.8 m/s after a quarter of a second, and 3.9 in a sprint.
WALKING_DAMPING, STANDING_DAMPING, SPRINT = 0.02, 0.0005, 2.2
HEADBOB = 9.3  # radians a second by which a step ahead takes half a metre

LIGHT_REACH, LIGHT_ANGLE = 18.0, 31.0  # metres; half of the cone, degrees
LIGHT_COLOR = (1.0, 0.86, 0.62)
PALE = (0.80, 0.74, 0.62, 1)


@kaVel.pattern
def Player(parent: kaVel.Coordinator, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0,
           fieldOfView: float = 45.0, farClip: float = 50.0):
    """The player, who stands on `at` and looks through the level's camera from now on.

    He belongs below the coordinator, under the name 'Player': that is where creatures, ears and screens look for him.
    """
    player = placed(parent, name or 'Player', at=(at[0], at[1] + SIZE[1] / 2, at[2]), turn=turn)
    addVolume(player, SIZE, 'BV_PLAYER')
    kaVel.addComponent(player, 'physics', 'PlayerPhysics', inverseMass=1.0 / MASS, longestStep=1 / 240,
                       surefooted=True, acceleration=kaVel.Vec4(0, PULL / MASS - FALL, 0, 0))
    sounds(player, 'Sprint', 'WhisperSanity', 'Ambience', 'Crouch', 'StandUp', 'FlashLightCharge', *STEPS)
    camera = placed(player, 'camera', at=(at[0], at[1] + EYE, at[2]), turn=turn)
    kaVel.addComponent(camera, 'parentFollower', 'TransformOffsetComponent',
                       positionOffset=kaVel.Vec4(0, EYE - SIZE[1] / 2, 0, 0))
    kaVel.addComponent(camera, 'viewer', 'ViewerComponent', verticalFieldOfViewAngle=math.radians(fieldOfView),
                       nearClipDistance=0.05, farClipDistance=farClip)
    kaVel.addComponent(camera, 'form', 'PlayerEyes')
    parent.getManager('graphics2').pushCamera(camera)
    Picture(player, 'reticle', picture='reticle.dds', size=(0.012, 0.012))
    component = kaVel.addComponent(player, 'player', 'PlayerComponent', movementSpeed=PUSH * MASS,
                                   headbobRate=HEADBOB, mobileDamping=WALKING_DAMPING,
                                   stationaryDamping=STANDING_DAMPING, sprintMultiplier=SPRINT,
                                   reachesThrough=False)
    for surface, material in FLOOR_SOUNDS.items():
        component.nameFloor(surface + 'Diffuse', material)
    settings.giveToPlayer(player)
    kaVel.addComponent(player, 'behaviors', 'BTComponent', behaviors=['PlayerTree'], defaultBehavior='PlayerTree')
    Visitor(player)
    pad(player)
    nerves(player)
    pockets(player)
    hands(player, throwBolt)
    keepThrownBolts(player)
    Captions.attend(parent)
    attend(player)
    keepPart(player, 'player', lambda: _told(component), lambda told: _become(component, told), travels=True)
    return player


def _told(mind: kaVel.PlayerComponent) -> dict[str, Any]:
    """What a player is besides where he stands and what his pockets hold; a dead one comes back in his right mind."""
    isDead = lifeOf(levelOf(mind)).isDead
    return {'sanity': 100.0 if isDead else mind.sanity, 'audioSanity': 100.0 if isDead else mind.audioSanity,
            'fatigue': mind.fatigue,
            'hasFlashlight': mind.getHasFlashlight(), 'flashlightOn': mind.isFlashlightOn(),
            'batteries': mind.batteries, 'batteryLeft': mind.currBatteryTimeLeft}


def _become(mind: kaVel.PlayerComponent, told: dict[str, Any]):
    """Makes a player what one has been."""
    kaVel.configure(mind, sanity=told['sanity'], audioSanity=told['audioSanity'], fatigue=told['fatigue'])
    if told['hasFlashlight'] and not mind.getHasFlashlight():
        player: Any = mind.parent
        at = player.getComponent('transform').position
        torch = Flashlight(player, 'torch', at=(at.x, at.y, at.z))
        kaVel.finishLoad(torch)
        mind.pickupFlashlight(torch.getComponent('physics'))
    mind.setFlashlightOn(told['flashlightOn'])
    kaVel.configure(mind, batteries=told['batteries'], currBatteryTimeLeft=told['batteryLeft'])


@kaVel.pattern
def Hud(parent: kaVel.Coordinator, name: str = ''):
    """What the screen tells of batteries, for a few seconds after something has changed."""
    hud = placed(parent, name or 'Hud')
    kaVel.addComponent(hud, 'hud', 'HudComponent')
    Picture(hud, 'EntQuad1', picture='panel', at=(0.115, 0.075), size=(0.20, 0.07), depth=3)
    Picture(hud, 'EntQuad2', picture='iconCandle', at=(0.045, 0.075), size=(0.035, 0.035), depth=2)
    player = parent.getChild('Player')
    mind = player.getComponent('player') if player else None
    Text(hud, 'BatteryCount', text='x %d' % (mind.batteries if mind else 0), at=(0.075, 0.095), size=0.018, color=PALE,
         anchor=('H_LEFT', 'V_CENTER'))
    kaVel.addComponent(hud, 'behaviors', 'BTComponent', behaviors=['HUD'], defaultBehavior='HUD')
    BatteryMeter(parent)
    return hud


@kaVel.pattern
def BatteryMeter(parent: kaVel.Coordinator, name: str = ''):
    """A bar on the screen that is as long as the battery in use lasts."""
    meter = Picture(parent, name or 'BatteryMeter', picture='meterLight', at=(0.075, 0.055), size=(0.12, 0.008),
                    anchor=('H_LEFT', 'V_CENTER'))
    kaVel.addComponent(meter, 'hud', 'HudComponent')
    kaVel.addComponent(meter, 'behaviors', 'BTComponent', behaviors=['BatteryMeter'], defaultBehavior='BatteryMeter')
    return meter


def _tube() -> kaVel.MeshBuilder:
    """A flashlight of 0.2 m that points along +z, with its head at the origin."""
    mesh = kaVel.MeshBuilder()
    mesh.addCylinder(0.016, 0.14, 20, at=kaVel.Vec4(0, 0, -0.13, 1), turn=turned(0, pitch=90))
    mesh.addCylinder(0.026, 0.06, 28, at=kaVel.Vec4(0, 0, -0.03, 1), turn=turned(0, pitch=90))
    return mesh


def _cell() -> kaVel.MeshBuilder:
    """A battery of 6 cm that lies along x."""
    mesh = kaVel.MeshBuilder()
    mesh.addCylinder(0.016, 0.055, 10, turn=turned(0, roll=90))
    mesh.addCylinder(0.005, 0.006, 8, at=kaVel.Vec4(0.03, 0, 0, 1), turn=turned(0, roll=90))
    return mesh


@kaVel.pattern
def Flashlight(parent: kaVel.Entity, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0):
    """A flashlight that lies at `at`, burning, until the player takes it."""
    torch = placed(parent, name or 'flashlight', at=at, turn=turn)
    volume = addVolume(torch, (0.2, 0.2, 0.2), 'BV_NONE')
    body = kaVel.addComponent(torch, 'physics', 'RigidBody', inverseMass=0.0)
    # What lies in a map is tied to the map's root; in the hand it is tied to the camera.
    offset = kaVel.Vec4(*at, 1) - parent.getComponent('transform').position
    kaVel.addComponent(torch, 'parentFollower', 'TransformOffsetComponent', positionOffset=offset,
                       orientationOffset=turned(turn))
    shaped(torch, _tube, 'iron', castShadows=False)
    sounds(torch, 'FlashlightOn', 'FlashlightOff')
    _bulb(torch, at, turn)
    kaVel.addComponent(torch, 'behaviors', 'BTComponent', behaviors=['Flashlight'], defaultBehavior='Flashlight')
    kaVel.addComponent(torch, 'hand', 'FlashlightHand')
    volume.setInteractFunc(lambda player: player.pickupFlashlight(body))
    marked(torch, 'take')
    return torch


def _bulb(torch: kaVel.Entity, at: Triple, turn: float):
    """The light of a flashlight, with a volume of its own that holds the cone whichever way it is turned."""
    bulb = placed(torch, 'flashlight', at=at, turn=turn)
    kaVel.addComponent(bulb, 'parentFollower', 'TransformOffsetComponent')
    radius = LIGHT_REACH * math.tan(math.radians(LIGHT_ANGLE))
    bulb.getComponent('transform').scale = kaVel.Vec4(radius, radius, LIGHT_REACH, 0)
    addVolume(bulb, cube(2 * LIGHT_REACH), 'BV_PARTITIONING_DUMMY')
    kaVel.addComponent(bulb, 'viewer', 'ViewerComponent', nearClipDistance=0.08, farClipDistance=LIGHT_REACH)
    kaVel.addComponent(bulb, 'graphics2', 'LightComponent', layer='LIGHT', lightFalloffEnd=LIGHT_REACH,
                       spotOuterAngle=math.radians(LIGHT_ANGLE), spotInnerAngle=math.radians(0.3 * LIGHT_ANGLE),
                       spotFalloff=11.0, textureName='flashlightLens', steadyShadows=True,
                       diffuseColor=kaVel.Vec4(*(1.9 * part for part in LIGHT_COLOR), 0),
                       specularColor=kaVel.Vec4(*(0.8 * part for part in LIGHT_COLOR), 0))


@kaVel.pattern
def SpareBattery(parent: kaVel.MapRootEntity, name: str = '', at: Triple = (0, 0, 0), turn: float = 0.0):
    """A battery that lies at `at` until the player takes it; it is gone for good."""
    battery = placed(parent, name or 'battery', at=at, turn=turn)
    volume = addVolume(battery, (0.15, 0.15, 0.15), 'BV_NONE')
    shaped(battery, _cell, 'brass')

    def take(player: kaVel.PlayerComponent):
        player.addBattery()
        sounds(player.parent, 'PickUp').playSoundEffect('PickUp')
        kaVel.persist(battery, 'murder')
        battery.murder()

    volume.setInteractFunc(take)
    marked(battery, 'take')
    return battery
