"""What the console knows beyond the engine's own commands. A module here adds commands; `Session.furnish` names them.

    from console.Session import Session, command

    @command('fall', 'metres', 'number')
    def fall(session: Session, line: str) -> str:
        '''Drops the player from a height; the first sentence is what the help shows.'''

A command gets the rest of the line. What it returns is written to the log; `Wrong` says what was wrong with the line.
"""
