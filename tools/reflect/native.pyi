"""The engine as scripts see it. Written by the build from the comments in the engine's headers.

The classes of objects below `Handle_` stand here for the editor: at run time a script meets them as the types of
handles, and finds the class itself through `_ReflectionInstance()`, as in `_ReflectionInstance().Entity.construct_()`.
Arguments go by position, all of them: a call takes exactly the arguments shown here.
"""

from typing import Any, Callable, Generic, Iterable, Iterator, Literal, Protocol, Sequence, TypeAlias, TypedDict
from typing import TypeVar, Union, Unpack, overload

_T = TypeVar("_T")
_Callable = Union["IReflectedThing", Callable[..., Any], None]
_Outline = Iterable[Sequence[float]]  # points of a plan: x and z


class Handle_:
    """A reference to an object of the tree; false once the object is gone."""

    def __new__(cls) -> Any:
        """The handle of no object, for calls that take none."""
    @property
    def children(self) -> ObjectChildrenView:
        """The object's children, in order or by name."""
    def _getType(self) -> IReflectedThing:
        """The reflected class of the object."""
    def __bool__(self) -> bool: ...
    def __hash__(self) -> int: ...
    def __eq__(self, other: object) -> bool: ...
    def __ne__(self, other: object) -> bool: ...


class IReflectedThing:
    """A class, function, enum, message or bound call, found by name."""

    @property
    def name(self) -> str:
        """Short name."""
    @property
    def qualifiedName(self) -> str:
        """Name with its scopes, as Object::getName."""
    def getMember(self, name: str, /) -> IReflectedThing | None:
        """The member of this name, or None."""
    def isSubclassOf(self, other: IReflectedThing, /) -> bool:
        """Whether this class is the other or derives from it."""
    def construct_(self, category: AllocationCategory = ..., /) -> Any:
        """Makes an object of this class; the handle is false where the class has none of its own."""
    def __getattr__(self, name: str) -> Any: ...
    def __call__(self, *arguments: Any) -> Any: ...
    def __int__(self) -> int: ...
    def __index__(self) -> int: ...


class _ObjectClass(IReflectedThing, Generic[_T]):
    """The record of a class of objects."""

    def construct_(self, category: AllocationCategory = ..., /) -> _T:
        """Makes an object of this class; the handle is false where the class has none of its own."""


class ObjectChildrenIterator:
    def __iter__(self) -> ObjectChildrenIterator: ...
    def next(self) -> AnyObject: ...
    def __next__(self) -> AnyObject: ...


class ObjectChildrenView:
    """The children of an object, in order or by name."""

    def __iter__(self) -> Iterator[AnyObject]: ...
    def itervalues(self) -> Iterator[AnyObject]: ...
    def __getitem__(self, name: str) -> AnyObject: ...
    def __contains__(self, name: str) -> bool: ...
    def has_key(self, name: str, /) -> bool: ...
    def __len__(self) -> int: ...


class AllocationCategory:
    """What one purpose has allocated."""

    name: str
    objectCount: int
    totalObjectSize: int
    totalHeaderOverhead: int
    totalAllocatorOverhead: int
    totalAlignmentOverhead: int


defaultAllocationCategory: AllocationCategory


class Vec4:
    """A vector of four components; w is 0 for directions, 1 for positions."""

    x: float
    y: float
    z: float
    w: float
    r: float
    g: float
    b: float
    a: float
    s: float
    t: float
    p: float
    q: float
    @overload
    def __init__(self, x: float = 0, y: float = 0, z: float = 0, w: float = 0) -> None: ...
    @overload
    def __init__(self, other: Vec4, /) -> None: ...
    @overload
    def __init__(self, *components: float) -> None: ...
    def __add__(self, other: Vec4) -> Vec4: ...
    def __sub__(self, other: Vec4) -> Vec4: ...
    def __mul__(self, other: Vec4 | float) -> Vec4: ...
    def __rmul__(self, other: Vec4 | float) -> Vec4: ...
    def __truediv__(self, other: float) -> Vec4: ...
    def __iadd__(self, other: Vec4) -> Vec4: ...
    def __isub__(self, other: Vec4) -> Vec4: ...
    def __neg__(self) -> Vec4: ...
    def __eq__(self, other: object) -> bool: ...
    def cross(self, other: Vec4, /) -> Vec4:
        """Cross product, with w 0."""
    def dot(self, other: Vec4, /) -> float:
        """Dot product of x, y and z."""
    def magnitude(self) -> float:
        """Length over all four components."""
    def magnitudeSquared(self) -> float:
        """Square of the length over all four components."""
    def normalize(self) -> None:
        """Makes the length 1, unless it is 1e-6 or less."""
    def reset(self) -> None:
        """Makes all components 0."""
    def clamp(self) -> None:
        """Makes components that are nearly 0 exactly 0."""


class GridCell:
    """The name of one cell of one grid; a default one is of no grid."""

    x: int
    z: int
    grid: SquareGrid
    @overload
    def __init__(self) -> None: ...
    @overload
    def __init__(self, grid: SquareGrid, x: int, z: int) -> None: ...
    def __eq__(self, other: object) -> bool: ...
    def __hash__(self) -> int: ...
    def getX(self) -> int:
        """Column, counted along x."""
    def getZ(self) -> int:
        """Row, counted along z."""
    def getGrid(self) -> SquareGrid:
        """The grid that the cell is meant in; it need not live."""
    def isValid(self) -> bool:
        """Whether the grid lives and has this cell."""
    def getWorldCoords(self) -> Vec4:
        """Centre of the cell; the zero vector if it is not valid."""
    def getValue(self) -> Vec4:
        """The cell's value; the zero vector if it is not valid."""
    def setValue(self, value: Vec4, /) -> None:
        """Stores a value; RuntimeError if the cell is not valid."""
    def getFloatValue(self, idx: int = 0, /) -> float:
        """One component of the cell's value; NaN if the cell is not valid or idx is above 3."""
    @overload
    def setFloatValue(self, value: float, /) -> None:
        """Stores the first component of the value; RuntimeError if the cell is not valid."""
    @overload
    def setFloatValue(self, idx: int, value: float, /) -> None:
        """Stores one component of the value; RuntimeError if the cell is not valid or idx is above 3."""
    def getNeighbor(self, i: SquareGrid.Neighbor | int | str, /) -> GridCell:
        """The cell beside this one, by SquareGrid.Neighbor; the grid need not have it."""
    def getValidNeighbors(self) -> list[GridCell]:
        """The cells around this one that the grid has, from the right one on counterclockwise."""
    def gridManhattanDistance(self, other: GridCell, /) -> float:
        """|dx| + |dz|, cells."""
    def worldManhattanDistance(self, other: GridCell, /) -> float:
        """|dx| + |dz| of the centres, metres."""
    def gridDistance(self, other: GridCell, /) -> float:
        """Straight distance, cells."""
    def worldDistance(self, other: GridCell, /) -> float:
        """Straight distance of the centres, metres."""
    def gridDistanceSquared(self, other: GridCell, /) -> float:
        """Square of the straight distance, cells."""
    def worldDistanceSquared(self, other: GridCell, /) -> float:
        """Square of the straight distance of the centres, metres."""


class PathRequest:
    """A creature's wish for a path to a cell of its map's path grid."""

    hEntity: Entity
    destination: GridCell
    priority: Any
    timeInQueue: float
    rubberbanding: bool
    saturation: bool
    @overload
    def __init__(self) -> None: ...
    @overload
    def __init__(self, hEntity: Entity, destination: GridCell, priority: RequestPriority | int | str = 0,
                 rubberbanding: bool = True, saturation: bool = True) -> None: ...


class ConsoleCommand:
    """A word that the console knows, and what it calls."""

    command: str
    param: str
    description: str
    function: _Callable
    takesLine: bool
    @overload
    def __init__(self) -> None: ...
    @overload
    def __init__(self, command: str, param: str = '', description: str = '', function: _Callable = None,
                 takesLine: bool = False) -> None:
        """A function takes as many texts as words are to be typed; with `takesLine` one, the rest of the line."""


class RayCollision:
    """Where a segment meets a surface; true where it meets one."""

    @property
    def collided(self) -> bool: ...
    @property
    def point(self) -> Vec4:
        """Where the segment enters, w 1."""
    @property
    def normal(self) -> Vec4:
        """Of the surface there, w 0."""
    @property
    def t(self) -> float:
        """Parameter on the segment: 0 at its start, 1 at its end."""
    def __bool__(self) -> bool: ...


class SteeringOutput:
    """What a behaviour asks of a body; a new one asks for nothing."""

    accel: Vec4
    vel: Vec4
    orientation: Vec4
    def __init__(self) -> None: ...
    def reset(self) -> None:
        """Asks for nothing any more."""
    def __add__(self, other: SteeringOutput, /) -> SteeringOutput: ...
    def __iadd__(self, other: SteeringOutput, /) -> SteeringOutput: ...
    def __mul__(self, factor: float, /) -> SteeringOutput: ...


class AvoidRay:
    """A ray that looks for what stands in the way."""

    collision: RayCollision
    ray: Vec4
    def __init__(self) -> None: ...


class FlockTarget:
    """What a flock makes for."""

    pos: Vec4
    vel: Vec4
    fTime: float
    def __init__(self) -> None: ...


class SegmentHit:
    """The nearest volume on a segment; true where there is one."""

    @property
    def volume(self) -> BoundingVolume:
        """The volume that is hit; false where none is."""
    @property
    def collided(self) -> bool: ...
    @property
    def point(self) -> Vec4:
        """Where the segment enters, w 1."""
    @property
    def normal(self) -> Vec4:
        """Of the surface there, w 0."""
    @property
    def t(self) -> float:
        """Parameter on the segment: 0 at its start, 1 at its end."""
    def __bool__(self) -> bool: ...


class GlobalListener:
    """Place, motion and bearing of the ears of a level."""

    @property
    def position(self) -> Vec4:
        """Metres, w 1."""
    @property
    def velocity(self) -> Vec4:
        """Metres a second."""
    @property
    def directionVector(self) -> Vec4:
        """Where the nose points, length 1."""
    @property
    def upVector(self) -> Vec4:
        """Where the crown points, length 1."""


class HeardWay:
    """How a sound of one place is heard at another."""

    @property
    def apparent(self) -> Vec4:
        """Where it is heard from: the sound's own place, or behind the nearest turn."""
    @property
    def gain(self) -> float:
        """Linear, of what doors, corners and walls leave; 1 where the sound is in sight."""
    @property
    def lowpass(self) -> float:
        """Hz, what is left of the high end."""
    @property
    def reverb(self) -> float:
        """Factor on what the listener's room returns."""
    @property
    def distance(self) -> float:
        """Length of the way, metres."""
    @property
    def open(self) -> bool:
        """Whether it comes by a way through the air, rather than only through walls."""
    @property
    def inSight(self) -> bool:
        """Whether nothing stands between."""


class ReverbShare:
    """The two kinds of room that are strongest at a point."""

    @property
    def first(self) -> str:
        """Name of the stronger one's preset."""
    @property
    def second(self) -> str:
        """Name of the other one's; the same where there is none."""
    @property
    def share(self) -> float:
        """Of the second, 0 to 0.5."""


class HeardSound:
    """A sound that can be heard now."""

    @property
    def name(self) -> str:
        """Of the event."""
    @property
    def caption(self) -> str:
        """What it is, for one who reads it; empty where it has none, or is too soft to be told of."""
    @property
    def direction(self) -> Vec4:
        """From the ears, to the right, up and ahead, length 1; 0 for what has no place."""
    @property
    def distance(self) -> float:
        """Metres along the way that it comes; 0 for what has no place."""
    @property
    def loudness(self) -> float:
        """Linear, at the ears."""


class MeshBuilder:
    """Gathers vertices and triangles, shapes and polygons, into one mesh; metres, front faces clockwise.

    Shapes are turned and then moved to `at`. `DynamicMeshAsset.setMeshData` draws the result.
    """

    vertexCount: int
    triangleCount: int
    bounds: tuple[Vec4, Vec4]
    def __init__(self) -> None: ...
    def clear(self) -> None:
        """Drops everything."""
    def addVertex(self, position: Vec4, normal: Vec4, u: float = 0, v: float = 0) -> int:
        """Appends a vertex and returns its number."""
    @overload
    def addTriangle(self, a: int, b: int, c: int, /) -> None:
        """Appends a triangle of vertices by their numbers, clockwise from its front; IndexError for a wrong number."""
    @overload
    def addTriangle(self, a: Vec4, b: Vec4, c: Vec4, /) -> None:
        """Appends three vertices as a triangle with its own normal."""
    @overload
    def addQuad(self, a: int, b: int, c: int, d: int, /) -> None:
        """Appends two triangles of vertices by their numbers: a, b, c and a, c, d."""
    @overload
    def addQuad(self, topLeft: Vec4, topRight: Vec4, bottomRight: Vec4, bottomLeft: Vec4, /) -> None:
        """Appends a flat quad with the whole texture on it."""
    def addPolygon(self, outline: _Outline, holes: Iterable[_Outline] = (), at: Vec4 = ...,
                   turn: Quaternion = ...) -> None:
        """Appends a flat area that faces +y, a plan of x and z with holes; ValueError where it crosses itself."""
    def addExtrusion(self, outline: _Outline, height: float, holes: Iterable[_Outline] = (), at: Vec4 = ...,
                     turn: Quaternion = ...) -> None:
        """Appends the solid between a plan and the same plan higher up; ValueError where it crosses itself."""
    def addSweep(self, outline: _Outline, stations: Iterable[tuple[Vec4, Quaternion]],
                 holes: Iterable[_Outline] = ()) -> None:
        """Appends the solid that a plan sweeps over from station to station, each a place and an orientation."""
    def addBox(self, halfSizes: Vec4, at: Vec4 = ..., turn: Quaternion = ...) -> None:
        """Appends a box, the whole texture on each face."""
    def addPlane(self, width: float, depth: float, columns: int = 1, rows: int = 1, at: Vec4 = ...,
                 turn: Quaternion = ...) -> None:
        """Appends a rectangle that faces +y, in cells."""
    def addCylinder(self, radius: float, height: float, segments: int = 16, at: Vec4 = ...,
                    turn: Quaternion = ...) -> None:
        """Appends a capped cylinder around the y axis."""
    def addSphere(self, radius: float, segments: int = 16, rings: int = 8, at: Vec4 = ...,
                  turn: Quaternion = ...) -> None:
        """Appends a sphere."""
    def merge(self, other: MeshBuilder, at: Vec4 = ..., turn: Quaternion = ...) -> None:
        """Appends a copy of another mesh."""
    def transform(self, at: Vec4 = ..., turn: Quaternion = ...) -> None:
        """Turns every vertex, then moves it."""
    def flip(self) -> None:
        """Turns the mesh inside out: every triangle and every normal."""
    def weld(self, tolerance: float = 1e-5) -> None:
        """Makes one vertex of those that are the same."""
    def dropFlatTriangles(self, leastArea: float = 1e-9) -> None:
        """Drops the triangles that have hardly an area, square metres."""
    def flattenNormals(self) -> None:
        """Gives each triangle its own normal."""
    def smoothNormals(self, creaseAngle: float = ...) -> None:
        """Smooths the edges that turn off by at most an angle, radians."""
    def generateTangents(self) -> None:
        """Makes tangents from normals and texture coordinates; what is lit needs them, last of all."""
    def applyWorldTextureCoordinates(self, scale: float = 1, at: Vec4 = ..., turn: Quaternion = ...) -> None:
        """Replaces texture coordinates by places in the world, with some repeats a metre."""


class Quaternion:
    """A rotation; r is the real part."""

    r: float
    i: float
    j: float
    k: float
    @overload
    def __init__(self, r: float = 1, i: float = 0, j: float = 0, k: float = 0) -> None: ...
    @overload
    def __init__(self, other: Quaternion, /) -> None: ...
    def __mul__(self, other: Quaternion) -> Quaternion: ...
    def __imul__(self, other: Quaternion) -> Quaternion: ...
    def __eq__(self, other: object) -> bool: ...
    def normalize(self) -> None:
        """Makes the length 1."""
    def clamp(self) -> None:
        """Makes components that are nearly 0 exactly 0."""
    def inverse(self) -> Quaternion:
        """The opposite rotation."""
    def update(self, angularVelocity: Vec4, seconds: float, /) -> None:
        """Turns by an angular velocity over a time in seconds."""
    @staticmethod
    def fromAxisAngle(axis: Vec4, radians: float, /) -> Quaternion:
        """Rotation around an axis by an angle in radians."""
    @staticmethod
    def fromDirection(direction: Vec4, /) -> Quaternion:
        """Rotation that faces along a direction."""
    @staticmethod
    def fromDirectionWithAdaptingUpVector(direction: Vec4, /) -> Quaternion:
        """Rotation that faces along a direction, also nearly straight up or down."""


class PostOffice_:
    """Delivers messages to their handlers."""

    def registerMessageHandler(self, messageType: IReflectedThing, handler: _Callable, /) -> None:
        """Calls a handler for every message of a type, until the handler fails."""
    def submitMessage(self, messageType: IReflectedThing, /, *payload: Any) -> None:
        """Calls every handler of a message, in the order in which they were registered."""


PostOffice: PostOffice_
messageTypes: dict[str, IReflectedThing]


def writeLog(text: str, /) -> None:
    """Writes one line of text to the log."""


def hearChanges(function: Callable[[Any, str], object] | None, /) -> None:
    """Has a function hear what scripts are about to change of objects; None for nobody."""


def OutputDebugString(text: str, /) -> None:
    """Writes a text to the debug output as it stands."""


def _ReflectionInstance() -> _ReflectionSystem:
    """The one register of reflected things."""
