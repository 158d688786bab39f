"""Where the reference's parts find the project, and what they say when something is missing."""

import json
import os

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "../.."))
RULES = ("audit", "checks", "pricing", "balances", "billtypes")


class Problem(Exception):
    """What keeps the reference from being written."""


def read(*path):
    with open(os.path.join(ROOT, *path), encoding="utf-8") as file:
        return file.read()


def data(name):
    return json.loads(read("scripts/reference", name))


class Words:
    """Chinese for English paragraphs; notes which were asked for."""

    def __init__(self):
        self.words, self.asked, self.missing = data("zh.json"), set(), []

    def __getitem__(self, english):
        self.asked.add(english)
        if english not in self.words and english not in self.missing:
            self.missing.append(english)
        return self.words.get(english, "")

    def check(self):
        left = set(self.words) - self.asked
        if self.missing:
            raise Problem("no translation in scripts/reference/zh.json for:\n" +
                          "\n".join(json.dumps(text, ensure_ascii=False) for text in self.missing))
        if left:
            raise Problem("scripts/reference/zh.json translates what nobody says:\n" +
                          "\n".join(sorted(left)))
