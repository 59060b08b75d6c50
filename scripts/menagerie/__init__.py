"""The rooms of the level `Menagerie`, and who lives in them."""
