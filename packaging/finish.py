"""Finishes a copy of the game: the links between its folders, and its scripts in compiled form.

    finish.py PREFIX HOME SHARE BIN

PREFIX is the folder that is being filled, the others are relative to it. A script's compiled form names the hash of its
source: one that is changed later is compiled anew, and the same sources give the same bytes.
"""

import importlib.util
import marshal
import os
import sys

CONTENT = 'assets', 'scripts', 'python.zip'
CHECKED_HASH = (3).to_bytes(4, 'little')


def link(target, path):
    """Makes `path` a link to `target`, relative, so that the copy may be moved."""
    os.makedirs(os.path.dirname(path), exist_ok=True)
    if os.path.lexists(path):
        os.remove(path)
    os.symlink(os.path.relpath(target, os.path.dirname(path)), path)


def compile_script(path):
    with open(path, 'rb') as source:
        text = source.read()
    code = compile(text, path[path.rindex('scripts/'):], 'exec', dont_inherit=True, optimize=0)
    # Written from a fresh copy: how often the running interpreter shares a constant must not show in the bytes.
    plain = marshal.dumps(marshal.loads(marshal.dumps(code)))
    compiled = importlib.util.cache_from_source(path)
    os.makedirs(os.path.dirname(compiled), exist_ok=True)
    with open(compiled, 'wb') as out:
        out.write(importlib.util.MAGIC_NUMBER + CHECKED_HASH + importlib.util.source_hash(text) + plain)


def main():
    if len(sys.argv) != 5:
        sys.exit(__doc__)
    home, share, programs = (os.path.join(sys.argv[1], folder) for folder in sys.argv[2:])
    for name in CONTENT:
        link(os.path.join(share, name), os.path.join(home, name))
    link(os.path.join(home, 'bin', 'kaVel'), os.path.join(programs, 'mornal'))
    for folder, _, files in os.walk(os.path.join(share, 'scripts')):
        for name in sorted(files):
            if name.endswith('.py'):
                compile_script(os.path.join(folder, name))


if __name__ == '__main__':
    main()
