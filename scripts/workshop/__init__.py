"""The rooms of the level `Workshop`, and what works in them."""
