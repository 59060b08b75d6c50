"""What a level writes over the picture: marks, notices, captions, sheets that are read."""
