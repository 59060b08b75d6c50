"""Edits of a level's pieces, each with its way back; how they are written is told by `editor.source`."""
