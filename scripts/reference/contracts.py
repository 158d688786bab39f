"""The contracts of the rules: the doc comments of their headers, found by the class table."""

import os
import re

from project import ROOT, RULES, read

ROW = re.compile(r'\{"(\w+)", \d+, 0x[0-9A-F]+, \w+, \w+, (?:true|false),\s*Bind<&([\w:]+)>')


def paragraphs_of(comment):
    """The paragraphs of comment lines. "1: …" and the like begin a paragraph of their own."""
    found = [[]]
    for line in comment:
        text = line.strip()[2:].strip()
        if not text or re.match(r"-?\d+: ", text):
            found.append([])
        if text:
            found[-1].append(text)
    return [" ".join(lines) for lines in found if lines]


FUNCTION = re.compile(r"(?!using|struct|class|return|template)"
                      r"[\w:<>\[\]]+[\w:<> ]*[ &]+(\w+)\(")


class Header:
    """A header of the rules: what stands at its head, and the contract of each of its functions."""

    def __init__(self, path):
        self.path = path
        lines = read(path).split("\n")
        head = [line for line in lines[:lines.index("#pragma once")] if line.startswith("//")]
        self.head = paragraphs_of(head)
        self.contracts = {}
        self.read_functions(lines[lines.index("#pragma once"):])

    def read_functions(self, lines):
        comment, spaces, declared = [], [], False
        for line in lines:
            space = re.match(r"namespace ([\w:]+) \{", line)
            if space:
                spaces += space[1].split("::")
            for name in reversed(re.findall(r"\}  // namespace ([\w:]+)", line)[0:1]):
                del spaces[len(spaces) - len(name.split("::")):]
            function = FUNCTION.match(line)
            if line.startswith("//"):
                comment, declared = ([] if declared else comment) + [line], False
            elif function:
                name = "::".join([*spaces[1:], function[1]])
                self.contracts[name] = paragraphs_of(comment)
                declared = True
            elif not line:
                comment, declared = [], False


def headers():
    found = {}
    for folder in RULES:
        for name in sorted(os.listdir(os.path.join(ROOT, "src", folder))):
            if name.endswith(".h"):
                found[name] = Header(f"src/{folder}/{name}")
    return found


def functions():
    """{class: {method: the function that carries it out}}, from the class table."""
    text = read("src/registry/class_table.cpp")
    arrays = {name: dict(ROW.findall(body)) for name, body in
              re.findall(r"constexpr Method (k\w+)\[\] = \{\n(.*?)\n\};", text, re.S)}
    return {cls: arrays[array] for cls, array in
            re.findall(r'\{"(\w+)", k\w+Transaction, (k\w+)\}', text)}


class Contracts:
    """Which header, and which contract, belongs to a function of the class table."""

    def __init__(self):
        self.headers = headers()
        self.functions = functions()

    def header(self, function):
        return next(header for header in self.headers.values() if function in header.contracts)

    def of(self, function):
        """Its paragraphs, with those of a function to which it refers ("See RunBeforeDel.")."""
        paragraphs = []
        for text in self.header(function).contracts[function]:
            other = re.fullmatch(r"See (\w+)\.", text)
            paragraphs += self.of(other[1]) if other else [text]
        return paragraphs

    def head(self, cls):
        """What the headers of a class say at their heads, and those that they name."""
        own = []
        for function in self.functions[cls].values():
            header = self.header(function)
            if header not in own:
                own.append(header)
        named = [self.headers[name] for header in own for name in
                 re.findall(r"\w+\.h", " ".join(header.head)) if name in self.headers]
        return own, [header for header in named if header not in own]
