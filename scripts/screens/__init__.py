"""The screens of the game: `Screens` opens and closes them, `Kit` has what they are put together of.

A screen is a module of this package with a function `build(menu)`. See docs/screens.md.
"""
