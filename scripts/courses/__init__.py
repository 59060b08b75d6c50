"""Courses that play levels by themselves, one a module; see `courseDriver`."""
