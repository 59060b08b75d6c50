"""Behaviour trees written in Python, by the factories of the library of trees."""
