"""What is wrong in a level that stands: looked for in the running game, so that it is about what scripts really built.

    from editor.lint import Findings

    for finding in Findings.of(level):
        kaVel.log(finding)

A rule is a generator in a module of this package, entered by `@Findings.rule`. What a level means to be as it is, it
says itself, with the reason, by kind of finding and path of the object:

    LINT = {'locked': {'house/bathDoor': 'the bolt is drawn from inside, see Story.openBath'}}

`tools/lint/lint.py` looks at all levels, the console's `lint` at the one that runs.
"""
