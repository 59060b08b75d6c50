"""The bar across the top: tools, what is done and undone, and how the level goes on meanwhile."""

from __future__ import annotations

from editor import Playing
from editor.Tools import tools
from editor.panels.Panel import TOP, Panel


class Toolbar(Panel):
    """A row of tools and of playing, and a row for the level, its files and the view; more in a narrow window."""

    name = 'Editor'
    isFrame = True

    def placeIn(self, width: int, height: int):
        return 0, 0, width, TOP

    def fill(self) -> None:
        editor, commands = self.editor, self.editor.commands
        for number, tool in enumerate(tools.all()):
            tip = '%s%s' % (tool.help, ' (%s)' % tool.key if tool.key else '')
            self.button(tool.name, lambda name=tool.name: editor.take(name), tip, beside=number > 0)
        self._playing()
        self.button('Undo', commands.undo, 'Ctrl+Z', beside=False)
        self.button('Redo', commands.redo, 'Ctrl+Y')
        self.button('Save', editor.panels.askToSave, 'Shows what it would write (Ctrl+S)')
        self.button('Levels', editor.panels.askForLevel, 'A new level, or another one (Ctrl+N)')
        self.button('Catalogue', editor.panels.catalogue.switch, 'All patterns, with pictures')
        self.button('Views', editor.panels.views.switch, 'Light, sound, ways and the like, made visible')
        self.button('Duplicate', commands.duplicate, 'Ctrl+D')
        self.button('Delete', commands.delete, 'Delete')
        self.button('Group', commands.group, 'Ctrl+G')
        self.button('Ungroup', commands.ungroup, 'Ctrl+Shift+G')
        self.button('Drop', commands.drop, 'Onto what lies below (End)')
        self.button('History', editor.panels.switchHistory, 'What was done, to go back to')
        self._looking()
        self.button('Keys', editor.panels.keys.switch, 'What each key does')
        self.toolTaken()

    def _playing(self) -> None:
        playing = self.editor.playing
        self.button('Stop', playing.stop, 'Has the level stand still (Space)')
        self.button('Go on', playing.goOn, 'Has the level go on behind the bars (Space)')
        self.button('Step', playing.step, 'Runs one frame (Period)')
        for speed in Playing.SPEEDS:
            self.button('%g' % speed, lambda speed=speed: playing.setSpeed(speed), 'Speed of the level')
        self.button('Play on', playing.playOn, 'Closes the editor: you stand where you stood (F8)')
        self.button('Play from here', playing.playFromHere, 'Closes the editor: you stand here (P)')

    def _looking(self) -> None:
        editor = self.editor
        self.button('Fly', lambda: editor.camera.setMode('fly'), 'The camera flies: right button and W A S D')
        self.button('Walk', lambda: editor.camera.setMode('walk'), 'The camera keeps to the height of the eye')
        self.button('Light', editor.aids.switchLight, 'To work by, which the level does not have (I)')
        self.button('Ceilings', editor.ceilings.switch, 'Shown to who is above them; hidden otherwise (C)')
        self.button('Grid', editor.aids.switchGrid, 'Metres on the ground')

    def toolTaken(self) -> None:
        for tool in tools.all():
            self.bar.setMarked(tool.name, bool(self.editor.tool) and self.editor.tool.name == tool.name)

    def doFrame(self) -> None:
        playing, panels = self.editor.playing, self.editor.panels
        marks = {'Stop': not playing.runs, 'Go on': playing.runs, 'Walk': self.editor.camera.mode == 'walk',
                 'Fly': self.editor.camera.mode == 'fly', 'Save': not self.editor.isSaved,
                 'Light': self.editor.aids.light, 'Grid': self.editor.aids.grid,
                 'Ceilings': not self.editor.ceilings.hidden,
                 'Catalogue': panels.catalogue.isShown, 'Views': panels.views.isShown,
                 'History': panels.history.isShown, 'Keys': panels.keys.isShown}
        marks.update({'%g' % speed: playing.speed == speed for speed in Playing.SPEEDS})
        if marks != getattr(self, '_marks', None):
            self._marks = marks
            for name, on in marks.items():
                self.bar.setMarked(name, on)
