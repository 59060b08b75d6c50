"""A level as its source has it: pieces, what is changed of them, and how that is written back."""
