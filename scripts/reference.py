#!/usr/bin/env python3
"""Writes the reference: docs/reference, a page for each class, the refusals and the schema.

usage: reference.py TAVCC [--out FOLDER]

Everything comes from where it is kept: classes, methods, keys and refusals from the program
(reference/examples.py), contracts from the doc comments of the rules' headers (contracts.py),
tables and columns from schema.sql (schema.py). What these say in English only is translated in
zh.json and columns.json (project.py); example calls and the meaning of results are in
examples.json and results.json, and the outputs come from running the examples on the sample
company. pages.py puts all of it together. A text without a translation, a method without an
example, or either of what is not there, is refused.
"""

import argparse
import os
import sys
import tempfile

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "reference"))

from examples import Program
from pages import NOTE, Reference
from project import ROOT, Problem


def is_page(path):
    """Whether the file was written by this program."""
    if not path.endswith(".md"):
        return False
    with open(path, encoding="utf-8") as file:
        return file.read(len(NOTE)) == NOTE


def write(pages, folder):
    """Writes all pages, and takes away those of what is gone."""
    os.makedirs(folder, exist_ok=True)
    for name in set(os.listdir(folder)) - set(pages):
        if is_page(os.path.join(folder, name)):
            os.remove(os.path.join(folder, name))
    for name, text in pages.items():
        with open(os.path.join(folder, name), "w", encoding="utf-8", newline="\n") as file:
            file.write(text.rstrip("\n") + "\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("tavcc", help="the program")
    parser.add_argument("--out", default=os.path.join(ROOT, "docs/reference"), help="the folder to write")
    arguments = parser.parse_args()
    try:
        with tempfile.TemporaryDirectory() as folder:
            write(Reference(Program(arguments.tavcc, folder)).pages(), arguments.out)
    except (Problem, OSError) as problem:
        sys.exit(f"reference.py: {problem}")


if __name__ == "__main__":
    main()
