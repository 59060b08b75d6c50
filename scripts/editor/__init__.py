"""The editor of levels: it opens with F8 in every level, and nothing of it is loaded or runs before.

    from editor.Editor import Editor

    editor = Editor.of(level)
    editor.select([editor.pieces.named('readingChair')])

A level is calls of patterns, and what is edited is these calls: see `source`. `Editor` is what all the rest meets in,
`tools/` are ways of working with the mouse, `drawing/` those that draw a plan, `views/` show what is otherwise felt,
`panels/` are the bars, `Catalogue` knows the patterns and their pictures. A tool or a view is a module with a class of
its own in one of these folders: see `Tools` and `Views`.
"""
