"""Example calls with their outputs, and what methods' results mean (examples.json, results.json)."""

import json
import os
import re
import subprocess

from project import Problem, data


class Program:
    """tavcc, on copies of one sample database."""

    def __init__(self, path, folder):
        self.path, self.folder = os.path.abspath(path), folder
        self.environment = {**os.environ, "LC_ALL": "C"}
        self.environment.pop("TAVCC_DSN", None)
        self.run("init", "--db", "sample.db", "--sample")
        with open(os.path.join(folder, "sample.db"), "rb") as file:
            self.sample = file.read()

    def run(self, *arguments):
        answer = subprocess.run([self.path, *arguments], cwd=self.folder, capture_output=True,
                                encoding="utf-8", env=self.environment, timeout=120)
        if answer.stderr:
            raise Problem(f"tavcc {' '.join(arguments)}: {answer.stderr}")
        return answer.stdout

    def json(self, *arguments):
        return json.loads(self.run(*arguments, "--json"))

    def fresh(self):
        with open(os.path.join(self.folder, "erp.db"), "wb") as file:
            file.write(self.sample)


def quoted(word):
    """A word as a shell takes it."""
    if re.fullmatch(r"[\w.=,:/@+-]+", word):
        return word
    return "'" + word.replace("'", "'\\''") + "'"


class Examples:
    """Example calls, their outputs, and a check of what they answer."""

    def __init__(self, program):
        self.program, self.examples, self.shown = program, data("examples.json"), set()

    def __getitem__(self, method):
        self.shown.add(method)
        if method not in self.examples:
            raise Problem(f"scripts/reference/examples.json has no example of {method}")
        example = self.examples[method]
        self.program.fresh()
        lines = []
        if "before" in example:
            batch = example["before"]
            lines += [f'$ tavcc sql --db erp.db "{batch}"',
                      self.program.run("sql", "--db", "erp.db", batch).rstrip()]
        call = ["call", "--db", "erp.db", method, *example["arguments"]]
        if "first" in example:
            call[3:4] = [example["first"], "--then", method.split(".")[1]]
        lines += ["$ tavcc " + " ".join(map(quoted, call)), self.program.run(*call).rstrip()]
        # The line of a source changes with everything above it.
        return re.sub(r"(src/\S+\.cpp):\d+", r"\1", "\n".join(lines))

    def check(self):
        left = set(self.examples) - self.shown
        if left:
            raise Problem("examples.json has examples of no method: " + ", ".join(sorted(left)))


class Results:
    """What a method's result means, and which errors it lets through."""

    def __init__(self):
        self.groups = {}
        for group in data("results.json"):
            for method in group["methods"]:
                if method in self.groups:
                    raise Problem(f"results.json has {method} twice")
                self.groups[method] = group
        self.shown = set()

    def __getitem__(self, method):
        self.shown.add(method)
        if method not in self.groups:
            raise Problem(f"scripts/reference/results.json has no results of {method}")
        return self.groups[method]

    def check_example(self, method, output):
        """An example may answer nothing that its method's results do not have."""
        result = re.findall(r"^  result *(.*)$", output, re.M)
        known = [value for value, *_ in self[method]["results"]]
        if result and result[-1] not in known and "*" not in known:
            raise Problem(f"{method} answers {result[-1]!r}, which results.json does not have")

    def check(self):
        left = set(self.groups) - self.shown
        if left:
            raise Problem("results.json has results of no method: " + ", ".join(sorted(left)))
