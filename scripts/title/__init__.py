"""The level Title: a room by night under the main menu."""
