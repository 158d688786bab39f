"""README.zh-CN.md says what README.md says: the same commands, links and names, section by section."""

import os
import re
import unittest

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "../.."))
OWN_LINKS = {"README.md", "README.zh-CN.md"}  # the link of each to the other


def sections(name):
    """The texts between headings of the second level."""
    with open(os.path.join(ROOT, name), encoding="utf-8") as file:
        return re.split(r"^## .*$", file.read(), flags=re.MULTILINE)


def blocks(text):
    return re.findall(r"^```\w*\n(.*?)^```", text, re.MULTILINE | re.DOTALL)


def commands(text):
    """What is typed: lines behind "$ ", and the first column of a list of commands."""
    typed = []
    for block in blocks(text):
        for line in block.splitlines():
            if line.startswith("$ "):
                typed.append(line[2:])
            elif re.match(r"(tavcc |\./\w+)", line):
                typed.append(re.split(r"  +(?=[^ -\[])", line)[0].rstrip())
    return typed


def names(text):
    """What stands in backquotes, outside of blocks."""
    prose = re.sub(r"^```.*?^```", "", text, flags=re.MULTILINE | re.DOTALL)
    return sorted(re.sub(r"\s+", " ", name) for name in re.findall(r"`([^`]+)`", prose))


def links(text):
    return sorted(set(re.findall(r"\]\(([^)]+)\)", text)) - OWN_LINKS)


class Readme(unittest.TestCase):
    def test_both_say_the_same(self):
        english, chinese = sections("README.md"), sections("README.zh-CN.md")
        self.assertEqual(len(chinese), len(english))
        self.assertGreater(len(commands("\n".join(english))), 15)
        for number, (one, other) in enumerate(zip(english, chinese)):
            with self.subTest(section=number, begins=one[:60]):
                self.assertEqual(commands(other), commands(one))
                self.assertEqual(names(other), names(one))
                self.assertEqual(links(other), links(one))
                self.assertEqual(len(blocks(other)), len(blocks(one)))

    def test_each_leads_to_the_other(self):
        self.assertIn("](README.zh-CN.md)", sections("README.md")[0])
        self.assertIn("](README.md)", sections("README.zh-CN.md")[0])


if __name__ == "__main__":
    unittest.main()
