"""What the level Nightfall is made of."""
