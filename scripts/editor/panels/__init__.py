"""The bars of the editor."""
