"""The tables of schema.sql, and what of them the rules use."""

import os
import re

from project import ROOT, RULES, Problem, data, read


class Relation:
    """A table, a view or a procedure of schema.sql."""

    def __init__(self, kind, name, comment, columns):
        self.kind, self.name, self.comment, self.columns = kind, name, comment, columns


def relations():
    found = []
    for batch in re.split(r"^GO$", read("src/host/schema.sql"), flags=re.M):
        made = re.search(r"^CREATE (TABLE|VIEW|PROCEDURE) (\w+)(.*)", batch, re.M | re.S)
        if not made:
            continue
        lines = batch[:made.start()].strip().split("\n")
        comment = [line[2:].strip() for line in lines if line.startswith("--")]
        # A table without a comment of its own shares that of the one before it.
        text = " ".join(comment) or found[-1].comment
        columns = re.findall(r"^  (F\w+) (\w+(?:\([\d,]+\))?)", made[3], re.M)
        found.append(Relation(made[1], made[2], text, columns if made[1] == "TABLE" else []))
    return found


def rule_sources():
    """{path: text} of the rules' sources."""
    return {f"src/{folder}/{name}": read("src", folder, name)
            for folder in RULES for name in sorted(os.listdir(os.path.join(ROOT, "src", folder)))
            if name.endswith(".cpp")}


def mentions(text, name):
    return re.search(rf"(?<!\w){name}(?!\w)", text, re.IGNORECASE) is not None


class Columns:
    """What the columns mean: by name, or by "Table.Column" where a table means something else."""

    def __init__(self):
        self.meanings, self.asked = data("columns.json"), set()

    def of(self, relation, column):
        own = f"{relation}.{column}"
        key = own if own in self.meanings else column
        self.asked.add(key)
        if key not in self.meanings:
            raise Problem(f"scripts/reference/columns.json has no meaning of {own}")
        return self.meanings[key]

    def check(self):
        left = set(self.meanings) - self.asked
        if left:
            raise Problem("columns.json has columns that no rule uses: " + ", ".join(sorted(left)))
