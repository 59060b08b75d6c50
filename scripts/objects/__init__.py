"""Patterns: callables `pattern(parent, name)` that build an object of the game and return its root."""
