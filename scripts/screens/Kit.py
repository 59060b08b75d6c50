"""What screens are put together of: containers, texts and the widgets that a player uses.

    from screens import Kit as kit

    def build(menu):
        column = kit.Column(menu, 'column', anchor='left', gap=6)
        kit.Label(column, 'title', words='credits.title', size='title')
        kit.Button(column, 'back', words='menu.back', pressed=lambda: Screens.close(level))

Each pattern hangs an entity under its parent and returns it. `words` is a key of the tables in `scripts/words`,
`literal` a ready text. Lengths are in 1/1080 of the height of the largest 16:9 picture that fits the window. What all
patterns take about their place stands at `Layout`.
"""

from __future__ import annotations

from typing import Any, Callable, Literal, Mapping, Sequence, TypedDict, Unpack

import kaVel
import words as tables

#: Where a widget stands in its room: which of its sides, or all of it.
Anchor = Literal['fill', 'left', 'right', 'top', 'bottom', 'center', 'topLeft', 'topRight', 'bottomLeft',
                 'bottomRight', 'leftFill', 'rightFill', 'centerFill', 'topFill', 'bottomFill']
Value = Any
Look = Literal['bare', 'ink', 'ruled', 'veil']

#: Sizes of texts by name.
SIZES = {'small': 24.0, 'body': 30.0, 'large': 40.0, 'title': 64.0}
#: Colours of texts by name.
COLORS: dict[str, tuple[float, float, float, float]] = {
    'paper': (0.86, 0.80, 0.66, 1), 'faded': (0.56, 0.51, 0.42, 1), 'candle': (0.99, 0.78, 0.42, 1),
    'ink': (0.10, 0.08, 0.06, 1), 'brass': (0.60, 0.46, 0.25, 1), 'warning': (0.86, 0.36, 0.26, 1)}

_ANCHORS: dict[str, tuple[kaVel.WidgetAlignName, kaVel.WidgetAlignName]] = {
    'fill': ('WA_FILL', 'WA_FILL'), 'left': ('WA_START', 'WA_CENTER'), 'right': ('WA_END', 'WA_CENTER'),
    'top': ('WA_CENTER', 'WA_START'), 'bottom': ('WA_CENTER', 'WA_END'), 'center': ('WA_CENTER', 'WA_CENTER'),
    'topLeft': ('WA_START', 'WA_START'), 'topRight': ('WA_END', 'WA_START'), 'bottomLeft': ('WA_START', 'WA_END'),
    'bottomRight': ('WA_END', 'WA_END'), 'leftFill': ('WA_START', 'WA_FILL'), 'rightFill': ('WA_END', 'WA_FILL'),
    'centerFill': ('WA_CENTER', 'WA_FILL'), 'topFill': ('WA_FILL', 'WA_START'), 'bottomFill': ('WA_FILL', 'WA_END')}
_LOOKS: dict[str, kaVel.FormLookName] = {'bare': 'FL_BARE', 'ink': 'FL_INK', 'ruled': 'FL_RULED', 'veil': 'FL_VEIL'}
_ALIGNMENTS: dict[str, kaVel.TextAlignmentName] = {'left': 'TA_LEFT', 'center': 'TA_CENTER', 'right': 'TA_RIGHT'}

#: Page that each set of tabs shows, by the names of its screen and of itself; it lasts while the screen is open.
_pages: dict[tuple[str, str], int] = {}


class Layout(TypedDict, total=False):
    """What every pattern takes about its place.

    `anchor` says where it stands in the room that it is given: 'fill' in a container, the middle of the window below a
    screen. `width` and `height` fix a size (a height is the least one), `mostWidth` is the most width, `grow` the share
    of a row's or column's spare room, `margin` what is kept free around it (all sides, or left, top, right, bottom),
    `visible` whether it is there, `opacity` how much is seen of it.
    """

    anchor: Anchor
    width: float
    height: float
    mostWidth: float
    grow: float
    margin: float | tuple[float, float, float, float]
    visible: bool
    opacity: float


# Containers

def Column(parent: kaVel.Object, name: str, *, gap: float = 4, look: Look = 'bare',
           padding: float | tuple[float, float, float, float] = 0, **layout: Unpack[Layout]) -> kaVel.Entity:
    """Widgets one below the other."""
    return _form(parent, name, 'FK_COLUMN', gap, look, padding, layout)


def Row(parent: kaVel.Object, name: str, *, gap: float = 12, look: Look = 'bare',
        padding: float | tuple[float, float, float, float] = 0, **layout: Unpack[Layout]) -> kaVel.Entity:
    """Widgets side by side; those with `grow` share what width is left."""
    return _form(parent, name, 'FK_ROW', gap, look, padding, layout)


def Grid(parent: kaVel.Object, name: str, *, columns: int, gap: float = 12, look: Look = 'bare',
         padding: float | tuple[float, float, float, float] = 0, **layout: Unpack[Layout]) -> kaVel.Entity:
    """Widgets in columns of the same width, row by row."""
    grid = _form(parent, name, 'FK_GRID', gap, look, padding, layout)
    grid.getComponent('form').columns = columns
    return grid


def Scroll(parent: kaVel.Object, name: str, *, gap: float = 4, look: Look = 'bare',
           padding: float | tuple[float, float, float, float] = 0, **layout: Unpack[Layout]) -> kaVel.Entity:
    """A column that scrolls where it has less height than it needs: by the wheel, and after the focus."""
    return _form(parent, name, 'FK_SCROLL', gap, look, padding, layout)


def Space(parent: kaVel.Object, name: str, *, size: float = 24, **layout: Unpack[Layout]) -> kaVel.Entity:
    """Nothing, `size` long; with `grow` all that is left."""
    space = _form(parent, name, 'FK_COLUMN', 0, 'bare', 0, layout)
    kaVel.configure(space.getComponent('form'), leastWidth=size, leastHeight=size)
    return space


# What is looked at

def Label(parent: kaVel.Object, name: str, *, words: str = '', literal: str = '',
          values: Mapping[str, object] | None = None, size: str | float = 'body', color: str = 'paper',
          align: Literal['left', 'center', 'right'] = 'left', **layout: Unpack[Layout]) -> kaVel.Entity:
    """A text, in as many lines as it needs; `say` gives it another one."""
    label, component = _widget(parent, name, 'form', 'LabelComponent', layout)
    kaVel.configure(component, text=_text(words, literal, values), textSize=_size(size),
                    color=kaVel.Vec4(*COLORS[color]), alignment=_ALIGNMENTS[align])
    return label


def Picture(parent: kaVel.Object, name: str, *, picture: str, size: tuple[float, float], stretched: bool = False,
            **layout: Unpack[Layout]) -> kaVel.Entity:
    """A picture of `assets/textures`, as large as it can be in its place and `size` at most, in the shape of `size`."""
    entity, component = _widget(parent, name, 'form', 'PictureComponent', layout)
    kaVel.configure(component, textureName=picture, pictureWidth=size[0], pictureHeight=size[1], stretched=stretched)
    return entity


def Sketch(parent: kaVel.Object, name: str, *, size: tuple[float, float], pen: float = 3,
           paper: tuple[float, float, float, float] = (0, 0, 0, 0), **layout: Unpack[Layout]) -> kaVel.Entity:
    """What is drawn by hand on a paper: `kit.component(entity).addStroke(...)`."""
    entity, component = _widget(parent, name, 'form', 'SketchComponent', layout)
    kaVel.configure(component, sketchWidth=float(size[0]), sketchHeight=float(size[1]), pen=float(pen),
                    color=kaVel.Vec4(*COLORS['ink']), paper=kaVel.Vec4(*paper))
    return entity


def Progress(parent: kaVel.Object, name: str, *, value: float = 0, **layout: Unpack[Layout]) -> kaVel.Entity:
    """A line that is filled from 0 to 1: `kit.component(entity).value`."""
    entity, component = _widget(parent, name, 'form', 'ProgressComponent', layout)
    component.value = value
    return entity


# What is used

def Button(parent: kaVel.Object, name: str, *, words: str = '', literal: str = '',
           values: Mapping[str, object] | None = None, pressed: Callable[[], object] | None = None,
           enabled: bool = True, help: str = '', size: str | float = 'body',
           focused: Callable[[], object] | None = None, align: Literal['left', 'center', 'right'] = 'left',
           row: bool = False, **layout: Unpack[Layout]) -> kaVel.Entity:
    """A line to press. `help` is the key of a sentence on it, `focused` is called when the focus comes to it."""
    entity, component = _button(parent, name, 'ButtonComponent', _text(words, literal, values), enabled, help, focused,
                                layout)
    kaVel.configure(component, textSize=_size(size), alignment=_ALIGNMENTS[align], look='BL_ROW' if row else 'BL_LINE')
    if pressed:
        component.setPressed(lambda: _done(pressed))
    return entity


def CheckBox(parent: kaVel.Object, name: str, *, words: str = '', literal: str = '', value: bool,
             changed: Callable[[bool], object], enabled: bool = True, help: str = '',
             focused: Callable[[], object] | None = None, **layout: Unpack[Layout]) -> kaVel.Entity:
    """Something that is on or off."""
    entity, component = _button(parent, name, 'CheckBoxComponent', _text(words, literal), enabled, help, focused,
                                layout)
    kaVel.configure(component, value=bool(value), look='BL_ROW')
    component.setChanged(lambda now: _done(changed, now))
    return entity


def Slider(parent: kaVel.Object, name: str, *, words: str = '', literal: str = '', least: float, most: float,
           step: float = 0, value: float, changed: Callable[[float], object],
           shown: Callable[[float], str] | None = None, enabled: bool = True, help: str = '',
           focused: Callable[[], object] | None = None, **layout: Unpack[Layout]) -> kaVel.Entity:
    """A number between two others; `shown` makes the text beside it."""
    entity, component = _button(parent, name, 'SliderComponent', _text(words, literal), enabled, help, focused, layout)
    kaVel.configure(component, least=float(least), most=float(most), step=float(step), value=float(value),
                    look='BL_ROW')
    tell = shown or (lambda now: tables.number(now, 0 if step >= 1 else 2))

    def change(now: float):
        component.valueText = tell(now)
        _done(changed, now)

    component.valueText = tell(component.value)
    component.setChanged(change)
    return entity


def Choice(parent: kaVel.Object, name: str, *, words: str = '', literal: str = '',
           choices: Sequence[tuple[Value, str]], value: Value, changed: Callable[[Value], object],
           enabled: bool = True, help: str = '', focused: Callable[[], object] | None = None,
           **layout: Unpack[Layout]) -> kaVel.Entity:
    """One of several values, each with the key of its words or a ready text."""
    entity, component = _button(parent, name, 'ChoiceComponent', _text(words, literal), enabled, help, focused, layout)
    component.look = 'BL_ROW'
    values = [each for each, _ in choices]
    for _, choice in choices:
        component.addChoice(tables.text(choice) if tables.has(choice) else choice)
    component.chosen = values.index(value) if value in values else 0
    component.setChanged(lambda number: _done(changed, values[number]))
    return entity


def TextEntry(parent: kaVel.Object, name: str, *, words: str = '', literal: str = '', value: str = '', most: int = 40,
              entered: Callable[[str], object], enabled: bool = True, help: str = '',
              focused: Callable[[], object] | None = None, **layout: Unpack[Layout]) -> kaVel.Entity:
    """A line that is typed: pressing it begins, Enter ends, Escape leaves it as it was."""
    entity, component = _button(parent, name, 'TextEntryComponent', _text(words, literal), enabled, help, focused,
                                layout)
    kaVel.configure(component, most=most, value=value, look='BL_ROW')
    component.setEntered(lambda text: _done(entered, text))
    return entity


def List(parent: kaVel.Object, name: str, *, rows: Sequence[str], chosen: Callable[[int], object],
         focused: Callable[[int], object] | None = None, selected: int = -1, gap: float = 0,
         **layout: Unpack[Layout]) -> kaVel.Entity:
    """Rows of ready texts, one below the other, that scroll; `chosen` gets the number of the one that is pressed."""
    entity = Scroll(parent, name, gap=gap, **layout)
    for number, text in enumerate(rows):
        row = Button(entity, 'row%d' % number, literal=text, row=True, pressed=lambda number=number: chosen(number),
                     focused=focused and (lambda number=number: focused(number)))
        component(row).selected = number == selected
    return entity


def Tabs(menu: kaVel.Object, name: str, *, pages: Sequence[tuple[str, Callable[[kaVel.Entity], object]]],
         focused: Callable[[], object] | None = None, **layout: Unpack[Layout]) -> kaVel.Entity:
    """Pages with a row of their names above; each is built when it is first seen, into a column that scrolls.

    Q and E, the page keys and the shoulders of a pad turn them. `focused` is called when the focus comes to a name.
    """
    layout.setdefault('anchor', 'fill')
    entity = Column(menu, name, gap=18, **layout)
    names = Row(entity, 'names', gap=0, look='ruled')
    sheets = _form(entity, 'pages', 'FK_PAGES', 0, 'bare', 0, {'grow': 1})
    tabs = _Tabs(menuOf(menu), name, names, sheets, pages)
    for number, (key, _) in enumerate(pages):
        Button(names, 'tab%d' % number, words=key, pressed=lambda number=number: tabs.show(number), grow=1,
               focused=focused)
        component(names.getChild('tab%d' % number)).look = 'BL_TAB'
        Scroll(sheets, 'page%d' % number)
    tabs.show(_pages.get(tabs.key, 0))
    tabs.screen.setPageTurned(tabs.turn)
    return entity


class _Tabs:
    def __init__(self, screen: kaVel.MenuComponent, name: str, names: kaVel.Entity, sheets: kaVel.Entity,
                 pages: Sequence[tuple[str, Callable[[kaVel.Entity], object]]]):
        self.screen, self.names, self.sheets, self.pages = screen, names, sheets, pages
        self.key = (screen.parent.name, name)
        self.built: set[int] = set()

    def show(self, number: int):
        number = min(max(number, 0), len(self.pages) - 1)
        if number not in self.built:
            self.built.add(number)
            self.pages[number][1](self.sheets.getChild('page%d' % number))
        _pages[self.key] = number
        self.sheets.getComponent('form').page = number
        for each in range(len(self.pages)):
            component(self.names.getChild('tab%d' % each)).selected = each == number

    def turn(self, direction: int):
        count = len(self.pages)
        self.show((_pages[self.key] + direction) % count)
        self.screen.focus = component(self.names.getChild('tab%d' % _pages[self.key]))


def forget(screen: str):
    """Has the tabs of a screen begin with their first page when it is opened next."""
    for key in [each for each in _pages if each[0] == screen]:
        del _pages[key]


# What stands already

def component(widget: kaVel.Entity) -> Any:
    """The component of a widget: its properties may change at any time."""
    return widget.getComponent('button') or widget.getComponent('form')


def menuOf(part: kaVel.Object) -> kaVel.MenuComponent:
    """The `MenuComponent` of the screen that something belongs to."""
    above: Any = part
    while above:
        menu = above.getChild('menu')
        if menu and menu._getType().isSubclassOf(kaVel.Reflection.MenuComponent):
            return menu
        above = above.parent
    raise ValueError('%s belongs to no screen' % kaVel.pathOf(part))


def say(widget: kaVel.Entity, words: str = '', literal: str = '', **values: object):
    """Gives a widget another text."""
    component(widget).text = _text(words, literal, values)


def focus(widget: kaVel.Entity):
    """Gives a widget the focus of its screen."""
    menuOf(widget).focus = component(widget)


def capture(part: kaVel.Object, taken: Callable[[str, int], object] | None):
    """Has a function get all that is pressed in a screen in the screen's place, until None is given.

    It gets 'key' and a virtual-key code, 'button' and a button of the mouse, or 'pad' and a button's bit.
    """
    menuOf(part).setInputTaken(taken)


def animate(widget: kaVel.Entity, name: str, final: Any, seconds: float, start: Any = None):
    """Takes a property of a widget to another value in some seconds, also while the level stands still.

    For numbers and Vec4, as 'opacity' and 'shift'.
    """
    target = component(widget)
    begin = getattr(target, name) if start is None else start
    time = kaVel.getSystem('GameLoopSystem').time
    passed = 0.0
    old = widget.getChild('animated ' + name)
    if old:
        old.murder()
    motion = kaVel.make('Entity', parent=widget, name='animated ' + name)

    def step():
        nonlocal passed
        passed += time.frameTimeSeconds
        part = min(passed / seconds, 1.0) if seconds > 0 else 1.0
        setattr(target, name, begin + (final - begin) * part)
        if part >= 1.0:
            motion.murder()

    kaVel.addComponent(motion, 'cursor', 'ScriptComponent', frameCallback=step)
    step()


def clear(container: kaVel.Entity):
    """Takes everything out of a container."""
    for child in list(container.children):
        if child._getType().isSubclassOf(kaVel.Reflection.Entity):
            child.murder()


# Within

def _text(words: str, literal: str, values: Mapping[str, object] | None = None) -> str:
    return tables.text(words, **(values or {})) if words else literal


def _size(size: str | float) -> float:
    return SIZES[size] if isinstance(size, str) else float(size)


def _done(function: Callable[..., object], *arguments: object) -> None:
    """Calls what a screen gave a widget to call; what it returns is nobody's."""
    function(*arguments)


def _sides(value: float | tuple[float, float, float, float]) -> kaVel.Vec4:
    return kaVel.Vec4(*value) if isinstance(value, tuple) else kaVel.Vec4(value, value, value, value)


def _widget(parent: kaVel.Object, name: str, key: str, className: Any, layout: Layout) -> tuple[kaVel.Entity, Any]:
    entity = kaVel.make('Entity', parent=parent, name=name)
    component: Any = kaVel.addComponent(entity, key, className)
    below = 'center' if parent.getChild('menu') else 'fill'
    component.alignX, component.alignY = _ANCHORS[layout.get('anchor', below)]
    if 'width' in layout:
        component.leastWidth = component.mostWidth = float(layout['width'])
    if 'mostWidth' in layout:
        component.mostWidth = float(layout['mostWidth'])
    if 'height' in layout:
        component.leastHeight = float(layout['height'])
    if 'grow' in layout:
        component.growX = component.growY = float(layout['grow'])
    if 'margin' in layout:
        component.margin = _sides(layout['margin'])
    if 'visible' in layout:
        component.shown = layout['visible']
    if 'opacity' in layout:
        component.opacity = float(layout['opacity'])
    return entity, component


def _form(parent: kaVel.Object, name: str, kind: kaVel.FormKindName, gap: float, look: Look,
          padding: float | tuple[float, float, float, float], layout: Layout) -> kaVel.Entity:
    entity, component = _widget(parent, name, 'form', 'FormComponent', layout)
    kaVel.configure(component, kind=kind, gap=float(gap), look=_LOOKS[look], padding=_sides(padding))
    return entity


def _button(parent: kaVel.Object, name: str, className: str, text: str, enabled: bool, help: str,
            focused: Callable[[], object] | None, layout: Layout) -> tuple[kaVel.Entity, Any]:
    entity, component = _widget(parent, name, 'button', className, layout)
    kaVel.configure(component, text=text, enabled=enabled, help=tables.text(help) if help else '')
    if focused:
        component.setFocused(lambda: _done(focused))
    return entity, component
