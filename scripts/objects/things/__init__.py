"""What stands about in rooms: furniture, lamps, what falls and what can be taken."""
