"""Runs Doxygen over the headers and reads its XML into a model."""

import os
import re
import shutil
import subprocess
import xml.etree.ElementTree as ElementTree

from failure import ReflectionError
from model import CLASS_KINDS, Comment, Model, Parameter, Record

# What KV_REFLECTED means to a caller of the class; the marker tells the generator that the macro is there.
MARKER = "KvReflectedMarker"
REFLECTED_BLOCK = ("KV_REFLECTED(C)=public: static const ReflectorPtr staticType; "
                   "ReflectorPtr getType() const override; "
                   f"Handle<C> getTypedHandle() const; private: friend struct {MARKER};")

# What KV_REFLECTED_MIXIN leaves for the generator to see.
MIXIN_MARKER = "KvReflectedMixinMarker"
MIXIN_BLOCK = f"KV_REFLECTED_MIXIN=private: friend struct {MIXIN_MARKER};"

# What KV_FIELDS leaves for the generator to see.
FIELDS_MARKER = "KvFieldsMarker"
FIELDS_BLOCK = f"KV_FIELDS=private: friend struct {FIELDS_MARKER};"

SETTINGS = {
    "PROJECT_NAME": "reflection",
    "FILE_PATTERNS": "*.h",
    "RECURSIVE": "YES",
    "GENERATE_HTML": "NO",
    "GENERATE_LATEX": "NO",
    "GENERATE_XML": "YES",
    "XML_PROGRAMLISTING": "NO",
    "MARKDOWN_SUPPORT": "NO",
    "AUTOLINK_SUPPORT": "NO",
    "JAVADOC_AUTOBRIEF": "YES",
    "EXTRACT_ALL": "YES",
    "EXTRACT_PRIVATE": "YES",
    "EXTRACT_PRIV_VIRTUAL": "YES",
    "EXTRACT_STATIC": "YES",
    "MACRO_EXPANSION": "YES",
    "EXPAND_ONLY_PREDEF": "YES",
    "SEARCH_INCLUDES": "NO",
    "INHERIT_DOCS": "NO",
    "CASE_SENSE_NAMES": "YES",
    "INCLUDE_GRAPH": "NO",
    "INCLUDED_BY_GRAPH": "NO",
    "CLASS_GRAPH": "NO",
    "COLLABORATION_GRAPH": "NO",
    "DIRECTORY_GRAPH": "NO",
    "HAVE_DOT": "NO",
    "ALIASES": '"cost=@par Cost"',
    "QUIET": "YES",
    "WARNINGS": "NO",
    "WARN_IF_DOC_ERROR": "NO",
    "WARN_IF_INCOMPLETE_DOC": "NO",
}


def run(doxygen, source, inputs, excluded, work):
    """Writes the XML of the headers below `inputs` into `work`/xml and returns that folder."""
    output = os.path.join(work, "xml")
    shutil.rmtree(output, ignore_errors=True)
    os.makedirs(work, exist_ok=True)
    settings = dict(SETTINGS)
    settings["OUTPUT_DIRECTORY"] = quoted(work)
    settings["STRIP_FROM_PATH"] = quoted(source)
    settings["INPUT"] = " ".join(quoted(os.path.join(source, path)) for path in inputs)
    settings["EXCLUDE"] = " ".join(quoted(os.path.join(source, path)) for path in excluded)
    settings["PREDEFINED"] = " ".join(map(quoted, (REFLECTED_BLOCK, MIXIN_BLOCK, FIELDS_BLOCK)))
    text = "".join(f"{name} = {value}\n" for name, value in sorted(settings.items()))
    done = subprocess.run([doxygen, "-"], input=text, text=True, cwd=source, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, check=False)
    if done.returncode != 0 or not os.path.isfile(os.path.join(output, "index.xml")):
        raise ReflectionError(doxygen, f"failed with exit code {done.returncode}:\n{done.stdout}")
    return output


def quoted(text):
    return '"' + text.replace('"', '\\"') + '"'


def read(folder, source):
    """The model of all records in a folder of Doxygen's XML."""
    reader = Reader(source)
    for name in sorted(os.listdir(folder)):
        if name.endswith(".xml") and name not in ("index.xml", "Doxyfile.xml"):
            reader.read_file(os.path.join(folder, name))
    return reader.model


class Reader:
    """Turns compound files into records."""

    def __init__(self, source):
        self.source = source
        self.model = Model()
        self.members = {}

    def read_file(self, path):
        try:
            root = ElementTree.parse(path).getroot()
        except ElementTree.ParseError as error:
            raise ReflectionError(f"{path}:{error.position[0]}", f"broken XML ({error}); build again, or run "
                                  "Doxygen by hand on the header that this file describes") from error
        for compound in root.findall("compounddef"):
            kind = compound.get("kind")
            if kind in CLASS_KINDS + ("namespace", "file"):
                self._read_compound(compound, kind)

    def _read_compound(self, node, kind):
        qualified = tidy(node.findtext("compoundname", ""))
        if "@" in qualified:  # unnamed namespaces, unions and structs have no name to be reached by
            return
        location = node.find("location")
        record = Record(id=node.get("id"), kind=kind, name=last_name(qualified), qualified=qualified,
                        comment=read_comment(node), protection=node.get("prot", "public"))
        record.is_template = node.find("templateparamlist") is not None or "<" in qualified
        self._read_location(record, location)
        if kind == "file":
            record.qualified = record.file
            record.line = 1
        for base in node.findall("basecompoundref"):
            record.base_names.append((tidy("".join(base.itertext())), base.get("prot"), base.get("virt")))
        record.inner = [inner.get("refid") for inner in node.findall("innerclass")]
        record.includes = [tidy(text_of(include)) for include in node.findall("includes")] if kind == "file" else []
        for member in node.iter("memberdef"):
            self._read_member(record, member)
        record.holds_union = any(m.kind == "variable" and "@" in m.type for m in record.own)
        self._apply_marker(record)
        self._name_the_nameless(record)
        if kind != "namespace" or record.own:
            self.model.add(record)

    def _read_member(self, scope, node):
        identifier = node.get("id")
        if scope.kind == "file" and identifier in self.members:
            return  # a file repeats what its namespaces declare
        kind = node.get("kind")
        if kind not in ("function", "variable", "typedef", "enum", "define", "friend"):
            return
        name = tidy(node.findtext("name", ""))
        record = Record(id=identifier, kind=kind, name="" if "@" in name else name, qualified="",
                        comment=read_comment(node), protection=node.get("prot", "public"))
        if scope.kind == "file" and node.findtext("qualifiedname") and kind != "define":
            record.qualified = tidy(node.findtext("qualifiedname"))
        else:
            record.qualified = f"{scope.qualified}::{name}" if scope.kind != "file" else name
        if scope.kind == "file" and "::" in record.qualified:
            return  # declared in a namespace, which lists it itself
        record.is_static = node.get("static") == "yes"
        record.is_const = node.get("const") == "yes"
        record.is_explicit = node.get("explicit") == "yes"
        record.is_inline = node.get("inline") == "yes"
        record.is_mutable = node.get("mutable") == "yes"
        record.is_strong = node.get("strong") == "yes"
        record.is_template = node.find("templateparamlist") is not None
        record.is_bitfield = node.find("bitfield") is not None
        record.virtual = node.get("virt", "non-virtual")
        record.type = tidy(text_of(node.find("type")))
        record.argsstring = tidy(node.findtext("argsstring") or "")
        record.initializer = tidy(text_of(node.find("initializer")))
        for parameter in node.findall("param"):
            self._read_parameter(record, parameter)
        self._read_location(record, node.find("location"))
        for value in node.findall("enumvalue"):
            self._read_enumerator(scope, record, value)
        self.members[identifier] = record
        scope.own.append(record)

    def _read_parameter(self, record, node):
        kind = tidy(text_of(node.find("type")))
        name = node.findtext("declname") or node.findtext("defname") or ""
        if kind == "void" and not name:
            return
        array = node.findtext("array") or ""
        record.parameters.append(Parameter(kind + array, name, tidy(text_of(node.find("defval")))))

    def _read_enumerator(self, scope, enum, node):
        name = node.findtext("name", "")
        prefix = f"{scope.qualified}::" if scope.kind != "file" else ""
        owner = f"{prefix}{enum.name}::" if enum.name else prefix
        enumerator = Record(id=node.get("id"), kind="enumvalue", name=name, qualified=owner + name,
                            comment=read_comment(node), protection=node.get("prot", "public"), file=enum.file,
                            line=enum.line, scope=enum)
        enumerator.initializer = tidy(text_of(node.find("initializer"))).removeprefix("=").strip()
        enum.own.append(enumerator)

    def _read_location(self, record, node):
        if node is None:
            return
        record.file = self._relative(node.get("declfile") or node.get("file", ""))
        record.line = int(node.get("declline") or node.get("line") or 0)
        record.column = int(node.get("declcolumn") or node.get("column") or 0)
        record.body_file = self._relative(node.get("bodyfile", ""))
        record.body_start = max(0, int(node.get("bodystart") or 0))
        record.body_end = max(0, int(node.get("bodyend") or 0))

    def _relative(self, path):
        return os.path.relpath(path, self.source) if os.path.isabs(path) else path

    def _apply_marker(self, record):
        """Notes that the macro is there and takes its own lines out of every class but the root."""
        record.is_mixin = any(m.kind == "friend" and m.name == MIXIN_MARKER for m in record.own)
        record.shows_fields = any(m.kind == "friend" and m.name == FIELDS_MARKER for m in record.own)
        record.own = [m for m in record.own if m.name not in (MIXIN_MARKER, FIELDS_MARKER)]
        marker = next((m for m in record.own if m.kind == "friend" and m.name == MARKER), None)
        if marker is None:
            return
        record.is_reflected = True
        record.reflected_line = marker.line
        block = {"getType", "getTypedHandle", "staticType", MARKER}
        texts = {"getType": "Record of the object's real class.",
                 "getTypedHandle": "The object's own handle under its static class.",
                 "staticType": "Record of this class."}
        kept = []
        for member in record.own:
            if member.line == marker.line and member.name in block:
                if record.qualified != "Object" or member is marker:
                    continue
                member.comment = Comment(brief=texts[member.name])
            kept.append(member)
        record.own = kept

    @staticmethod
    def _name_the_nameless(record):
        # Doxygen counts unnamed enums over the whole run; counting them in their scope keeps names stable.
        unnamed = [m for m in record.own if not m.name]
        for number, member in enumerate(sorted(unnamed, key=lambda m: (m.line, m.column)), start=1):
            prefix = f"{record.qualified}::" if record.kind != "file" else ""
            member.qualified = f"{prefix}<unnamed {number}>"


def last_name(qualified):
    """The last component of a qualified name; template arguments may contain scopes themselves."""
    depth = 0
    for at in range(len(qualified) - 1, 0, -1):
        depth += {">": 1, "<": -1}.get(qualified[at], 0)
        if depth == 0 and qualified[at - 1:at + 1] == "::":
            return qualified[at + 1:]
    return qualified


def text_of(node):
    return "".join(node.itertext()) if node is not None else ""


def tidy(text):
    text = " ".join(text.split())
    return re.sub(r"\s*>", ">", re.sub(r"<\s+", "<", text)) if "operator" not in text else text


def split_first_sentence(text):
    """The sentence that stands alone as a tooltip, and what follows it in the same paragraph."""
    end = re.search(r"(?<!e\.g)(?<!i\.e)[.!?]\s+(?=[A-Z\"(`])", text)
    return (text[:end.start() + 1], text[end.end():]) if end else (text, "")


def read_comment(node):
    """The parts of a record's documentation."""
    brief, rest = split_first_sentence(paragraph(node.find("briefdescription")))
    comment = Comment(brief=brief, paragraphs=[rest] if rest else [],
                      in_body=paragraph(node.find("inbodydescription")))
    detailed = node.find("detaileddescription")
    if detailed is None:
        return comment
    for para in detailed.findall("para"):
        read_detail(comment, para)
    return comment


def read_detail(comment, para):
    for item in para.iter("parameteritem"):
        text = paragraph(item.find("parameterdescription"))
        for name in item.iter("parametername"):
            comment.parameters["".join(name.itertext())] = text
    for section in para.findall("simplesect"):
        title = tidy(text_of(section.find("title"))) or section.get("kind", "")
        body = " ".join(tidy(text_of(p)) for p in section.findall("para")).strip()
        if section.get("kind") == "return":
            comment.returns = body
        else:
            comment.notes.append((title, body))
    plain = own_text(para)
    if plain and plain not in comment.paragraphs:
        comment.paragraphs.append(plain)


def own_text(para):
    """The running text of a paragraph, without the parameter lists and sections that Doxygen nests in it."""
    parts = [para.text or ""]
    for child in para:
        if child.tag not in ("parameterlist", "simplesect", "itemizedlist", "orderedlist"):
            parts.append("".join(child.itertext()))
        parts.append(child.tail or "")
    return tidy("".join(parts))


def paragraph(node):
    return tidy(text_of(node))
