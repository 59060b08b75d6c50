"""What a level is built of: plans and walls, rooms, doors, stairs, and how large the map is."""
