"""The game's levels, one module each; see `loader` for what a level module holds."""
