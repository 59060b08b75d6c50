"""The tools that select, move and place; a module of this folder that enters a tool is found by itself."""
