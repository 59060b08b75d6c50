"""Reports of a run: one file that tells a developer what happened, and plays it again.

A key or the console's `report` writes one, and a run that ends badly leaves one behind, see `Keeping`; what such a file
holds stands in `Archive`; `./play --report FILE` plays it, see `Playing`.
"""
