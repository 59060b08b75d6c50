"""The tools that draw a level's plan: walls corner by corner, what is cut into them, areas, rounds, blocked cells.

All of them draw on a level plane, the floor that is built on; `Ground` has its height and what places snap to, `Walled`
knows the walls that stand.
"""
