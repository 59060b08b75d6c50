"""Puts the licences of the libraries that a copy brings along beside its own.

    licences.py LIBRARIES OUTPUT

Each library in the folder LIBRARIES is looked up among the distribution's packages, whose `copyright` goes to OUTPUT
under the package's name. A library that belongs to none ends it, as one that may not be given away.
"""

import os
import shutil
import subprocess
import sys


def package_of(name):
    """The package that a library file of the distribution belongs to."""
    found = subprocess.run(['dpkg-query', '-S', '*/' + name], capture_output=True, text=True).stdout
    if not found:
        sys.exit('licences.py: %s belongs to no package, so nobody can tell under which licence it is' % name)
    return found.split(':')[0]


def main():
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    libraries, output = sys.argv[1:]
    os.makedirs(output, exist_ok=True)
    names = [name for name in sorted(os.listdir(libraries)) if not os.path.islink(os.path.join(libraries, name))]
    for package in sorted({package_of(name) for name in names}):
        shutil.copyfile('/usr/share/doc/%s/copyright' % package, os.path.join(output, package))


if __name__ == '__main__':
    main()
