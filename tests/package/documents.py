#!/usr/bin/env python3
"""documents.py FOLDER DOCUMENT...: writes each block of C++ or QML in the documents to a file of its own.

A block of C++ statements becomes a function with a `window`; a block of whole functions stays as it is.
QML stays as it is.
"""

import pathlib
import re
import sys

BLOCK = re.compile(r"^```(cpp|qml)\n(.*?)^```", re.DOTALL | re.MULTILINE)
INCLUDE = re.compile(r"^#include .*\n", re.MULTILINE)
DEFINITION = re.compile(r"^(class|struct|Q_LOGGING_CATEGORY|[\w:<>&* ]+ [&*]*\w+\(.*\) \{$)", re.MULTILINE)
PREAMBLE = "#include <KestrioKit/Kestrio.h>\n#include <QWidget>\n"


def source(block):
    includes = "".join(INCLUDE.findall(block))
    rest = INCLUDE.sub("", block)
    if not DEFINITION.search(rest):
        rest = "void statements([[maybe_unused]] QWidget *window);\n" \
            "void statements([[maybe_unused]] QWidget *window) {\n" + rest + "}\n"
    return PREAMBLE + includes + rest


def main(folder, documents):
    for document in map(pathlib.Path, documents):
        for number, match in enumerate(BLOCK.finditer(document.read_text(encoding="utf-8")), 1):
            name = str(document.with_suffix("")).replace("/", "-")
            language, block = match.groups()
            text = source(block) if language == "cpp" else block
            (pathlib.Path(folder) / f"{name}-{number}.{language}").write_text(text, encoding="utf-8")


main(sys.argv[1], sys.argv[2:])
