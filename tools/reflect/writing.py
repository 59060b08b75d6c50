"""Output files that keep their time stamp while their content stays the same."""

import os


def write_if_changed(path, text):
    """Writes a file unless it has this text already; tells whether it wrote."""
    try:
        with open(path, encoding="utf-8") as present:
            if present.read() == text:
                return False
    except (FileNotFoundError, UnicodeDecodeError):
        pass
    os.makedirs(os.path.dirname(path) or ".", exist_ok=True)
    with open(path, "w", encoding="utf-8") as target:
        target.write(text)
    return True


def remove_others(folder, kept):
    """Deletes the files of a folder that are not among the kept names."""
    if not os.path.isdir(folder):
        return
    for name in sorted(os.listdir(folder)):
        path = os.path.join(folder, name)
        if name not in kept and os.path.isfile(path):
            os.remove(path)
