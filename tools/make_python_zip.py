"""Packs the interpreter's own library into the archive that the game brings along.

    make_python_zip.py OUTPUT

Takes the standard library of the interpreter that runs this, which must be the version the game embeds, leaves out what
a game has no use for or what needs extension modules from outside the interpreter, and compiles the rest. The same
library gives the same bytes, and an archive that would not change is not touched.
"""

import importlib.util
import io
import marshal
import os
import sys
import sysconfig
import zipfile

# The game's interpreter; a compiled module of another version does not load.
VERSION = (3, 11)

# Packages and modules without use in a game: tools, tests, servers, installers, desktop toolkits.
LEFT_OUT = {
    '__hello__', '__phello__', '_aix_support', '_distutils_system_mod', '_osx_support', 'antigravity', 'asynchat',
    'asyncio', 'asyncore', 'cgi', 'cgitb', 'concurrent', 'dist-packages', 'distutils', 'email', 'ensurepip', 'ftplib',
    'html', 'http', 'idlelib', 'imaplib', 'lib-dynload', 'lib2to3', 'mailbox', 'mailcap', 'nntplib', 'poplib', 'pydoc',
    'pydoc_data', 'site-packages', 'sitecustomize', 'smtpd', 'smtplib', 'socketserver', 'telnetlib', 'test', 'this',
    'tkinter', 'turtle', 'turtledemo', 'venv', 'webbrowser', 'wsgiref', 'xmlrpc',
}

# Modules that do not work without an extension module in a file of its own, which an archive cannot hold.
NEEDS_EXTENSION = {
    '_pydecimal', 'bz2', 'cProfile', 'contextvars', 'crypt', 'ctypes', 'curses', 'dbm', 'decimal', 'fractions', 'lzma',
    'multiprocessing', 'pty', 'sqlite3', 'ssl', 'statistics', 'sunau', 'tty', 'wave',
}

# How the interpreter was built, in files named after the machine.
BUILD_RECORDS = ('_sysconfigdata_', 'config-')

# One moment for every entry, the earliest that the format knows.
STAMP = (1980, 1, 1, 0, 0, 0)


def is_wanted(top):
    """Whether a module or package of the library's top folder belongs in the archive."""
    return top not in LEFT_OUT and top not in NEEDS_EXTENSION and not top.startswith(BUILD_RECORDS)


def sources(library):
    """The library's source files as paths relative to it, in order."""
    found = []
    for folder, folders, files in os.walk(library):
        inside = os.path.relpath(folder, library)
        folders[:] = [name for name in folders
                      if name not in ('__pycache__', 'test', 'tests') and (inside != '.' or is_wanted(name))]
        for name in files:
            if name.endswith('.py') and (inside != '.' or is_wanted(name[:-3])):
                found.append(os.path.normpath(os.path.join(inside, name)).replace(os.sep, '/'))
    return sorted(found)


def compiled(library, path):
    """The compiled form of one source file, marked so that the loader never looks for the source."""
    with open(os.path.join(library, path), 'rb') as source:
        text = source.read()
    code = compile(text, 'python.zip/' + path, 'exec', dont_inherit=True, optimize=0)
    unchecked = (1).to_bytes(4, 'little')
    # Written from a fresh copy: how often the running interpreter shares a constant must not show in the bytes.
    plain = marshal.dumps(marshal.loads(marshal.dumps(code)))
    return importlib.util.MAGIC_NUMBER + unchecked + importlib.util.source_hash(text) + plain


def archive(library):
    """The bytes of the whole archive."""
    buffer = io.BytesIO()
    with zipfile.ZipFile(buffer, 'w', zipfile.ZIP_DEFLATED) as out:
        for path in sources(library):
            entry = zipfile.ZipInfo(path + 'c', STAMP)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o644 << 16
            out.writestr(entry, compiled(library, path))
    return buffer.getvalue()


def write_if_changed(path, content):
    try:
        with open(path, 'rb') as present:
            if present.read() == content:
                return
    except FileNotFoundError:
        pass
    with open(path + '.new', 'wb') as out:
        out.write(content)
    os.replace(path + '.new', path)


def main():
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    if sys.version_info[:2] != VERSION:
        sys.exit('make_python_zip.py: run by Python %d.%d, but the game embeds %d.%d; run it with python%d.%d'
                 % (sys.version_info[:2] + VERSION + VERSION))
    write_if_changed(sys.argv[1], archive(sysconfig.get_path('stdlib')))


if __name__ == '__main__':
    main()
