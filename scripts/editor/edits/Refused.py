"""What an edit is refused by."""


class Refused(ValueError):
    """An edit that cannot be: its text says why, in a sentence for the designer. Nothing was changed."""
