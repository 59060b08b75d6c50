"""What is otherwise felt or heard, drawn into the level: one view a class, see `editor.Views`.

Each works with the editor open, by its switch, and without it by the console's `view NAME` (`Onlooker`). What costs
much is worked out a little in each frame, and anew where something was edited.
"""
