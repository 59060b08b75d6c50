"""Makes the static reflection table of a program from the headers of its classes.

Doxygen reads the headers; this script writes one C++ file for each slot of a folder, the typed stubs for
scripts and the list of reflected names. A file whose content stays the same keeps its time stamp, so that the build
compiles only what a change of a header really touches.
"""

import argparse
import os
import pickle
import sys

import doxygen
import fields
import names
import reference
import stubs
import tables
from failure import ReflectionError
from signatures import Signatures
from writing import remove_others, write_if_changed

# Headers of the script interpreter. They are dear to compile, and what deals in its objects is no call for scripts.
INTERPRETER = ("Python.h", "boost/python")


def arguments():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--doxygen", required=True, help="the doxygen program")
    parser.add_argument("--source", required=True, help="root of the sources; all paths in the table count from it")
    parser.add_argument("--table", required=True, help="name of the table")
    parser.add_argument("--out", required=True, help="folder of the generated files")
    parser.add_argument("--slot", action="append", required=True, metavar="FOLDER=COUNT",
                        help="folder of headers to describe, and the count of source files for it")
    parser.add_argument("--exclude", action="append", default=[], help="folder of headers to leave out")
    parser.add_argument("--include-root", action="append", default=[], help="folder that #include paths start at")
    parser.add_argument("--no-invokers", action="append", default=[],
                        help="header whose free functions get no invokers")
    parser.add_argument("--import-model", help="model of the table that this one builds on")
    parser.add_argument("--export-model", help="file for this table's model, for tables that build on it")
    parser.add_argument("--stubs", help="file for the typed stubs")
    parser.add_argument("--reference", help="folder for the pages of the script reference")
    parser.add_argument("--names", help="file for the list of reflected names")
    return parser.parse_args()


def main():
    options = arguments()
    slots = {}
    for entry in options.slot:
        folder, _, count = entry.partition("=")
        slots[folder] = int(count or 1)

    model = describe(options, slots)
    written = write_sources(options, slots, model)
    remove_others(options.out, written)
    if options.stubs:
        write_if_changed(options.stubs, stubs.text(model))
    if options.reference:
        reference.write(model, options.reference)
    if options.names:
        write_if_changed(options.names, names.text(model))
    if options.export_model:
        with open(options.export_model, "wb") as target:
            sys.setrecursionlimit(100000)
            pickle.dump(model, target, protocol=pickle.HIGHEST_PROTOCOL)


def describe(options, slots):
    """The model of the table's headers, on top of the imported one."""
    folders = [f for f in slots if os.path.isdir(os.path.join(options.source, f))]
    xml = doxygen.run(options.doxygen, options.source, folders, options.exclude, options.out + ".doxygen")
    model = doxygen.read(xml, options.source)
    if options.import_model:
        sys.setrecursionlimit(100000)
        with open(options.import_model, "rb") as source:
            model.import_from(pickle.load(source))
    model.connect()
    signatures = Signatures(model)
    closed = set(options.no_invokers) | model.files_that_include(INTERPRETER)
    for record in model.by_id.values():
        if not record.imported and (record.class_scope is not None or record.file not in closed):
            record.signature = signatures.sign(record)
    for note in sorted(signatures.notes):
        print(note)
    return model


def write_sources(options, slots, model):
    """Writes a source file for each slot and the table itself; gives the names of all files."""
    symbols = tables.Symbols(model)
    roots = sorted(options.include_root, key=len, reverse=True)

    def include_of(path):
        root = next((r for r in roots if path.startswith(r + "/")), None)
        return path[len(root) + 1:] if root else path

    groups = {f"{os.path.basename(f)}_{i}": [] for f in slots for i in range(slots[f])}
    records = model.classes() + model.enums() + model.files + model.namespaces
    for record in sorted(records, key=lambda r: (r.file, r.kind == "file", r.line, r.column, r.qualified)):
        if not record.imported:
            groups[tables.slot_of(record.file, slots)].append(record)

    written = set()
    for name, group in groups.items():
        part = f"{options.table}_{name}"
        held = fields.parts_below(model, [r for r in group if r.is_class and r.is_reflected])
        text = tables.PartWriter(part, group, symbols, include_of, held).text()
        write_if_changed(os.path.join(options.out, f"{name}.cpp"), text)
        written.add(f"{name}.cpp")
    parts = [f"{options.table}_{name}" for name in groups]
    write_if_changed(os.path.join(options.out, "Table.cpp"), tables.write_table(options.table, parts))
    written.add("Table.cpp")
    return written


if __name__ == "__main__":
    try:
        main()
    except ReflectionError as error:
        sys.exit(str(error))
