"""The rooms of the level "Gallery"."""
