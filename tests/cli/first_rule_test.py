"""docs/your-first-rule.md, followed: its rule is written into a copy of what it touches, compiled
as the build compiles, linked against what is built, and called as the page calls it."""

import os
import re
import shlex
import subprocess
import sys
import tempfile
import unittest

PROJECT = os.path.abspath(os.path.join(os.path.dirname(__file__), "../.."))
BUILD = ""
TABLE = "src/registry/class_table.cpp"


def page():
    with open(os.path.join(PROJECT, "docs/your-first-rule.md"), encoding="utf-8") as file:
        return file.read()


def blocks(kind):
    """(path, text) of each block of this kind that names a file."""
    return re.findall(rf"^```{kind} (\S+)\n(.*?)^```", page(), re.S | re.M)


def commands(target):
    """What the build runs to make the target, from its sources on."""
    answer = subprocess.run(["ninja", "-C", BUILD, "-t", "commands", target], capture_output=True,
                            text=True, check=True)
    return answer.stdout.splitlines()


def applied(text, change):
    """The text with a change whose other lines stand in it once."""
    lines = change.splitlines()
    before = "".join(line[1:] + "\n" for line in lines if not line.startswith("+"))
    after = "".join(line[1:] + "\n" for line in lines)
    if text.count(before) != 1:
        raise AssertionError(f"stands {text.count(before)} times in the file:\n{before}")
    return text.replace(before, after)


class FirstRule(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        if not os.path.exists(os.path.join(BUILD, "build.ninja")):
            raise unittest.SkipTest("the build is not ninja's")
        cls.folder = tempfile.TemporaryDirectory()
        cls.write_files()
        cls.command, cls.original = cls.table_command()
        table = cls.path(TABLE)
        if os.path.basename(cls.original) != os.path.basename(TABLE):
            table = cls.copy_of_unity()
        rules = [cls.path(path) for path, _ in blocks("cpp") if path.endswith(".cpp")]
        cls.objects = [cls.compiled(source) for source in [table, *rules]]
        cls.tavcc = cls.linked("bin/tavcc")

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    @classmethod
    def path(cls, name):
        return os.path.join(cls.folder.name, name)

    @classmethod
    def write(cls, name, text):
        os.makedirs(os.path.dirname(cls.path(name)), exist_ok=True)
        with open(cls.path(name), "w", encoding="utf-8") as file:
            file.write(text)

    @classmethod
    def write_files(cls):
        for kind in ("cpp", "json"):
            for path, text in blocks(kind):
                cls.write(path, text)
        changed = {}
        for path, change in blocks("diff"):
            if path not in changed:
                with open(os.path.join(PROJECT, path), encoding="utf-8") as file:
                    changed[path] = file.read()
            changed[path] = applied(changed[path], change)
        for path, text in changed.items():
            cls.write(path, text)

    @classmethod
    def table_command(cls):
        """What compiles the class table: by itself, or in one source with its folder."""
        for line in commands("bin/tavcc"):
            words = shlex.split(line)
            if "-c" not in words:
                continue
            source = os.path.join(BUILD, words[words.index("-c") + 1])
            if source.endswith(TABLE):
                return words, source
            if "registry" in os.path.basename(source):
                with open(source, encoding="utf-8") as file:
                    if os.path.basename(TABLE) in file.read():
                        return words, source
        raise AssertionError("nothing compiles the class table")

    @classmethod
    def copy_of_unity(cls):
        """The folder's one source, with the page's class table in it."""
        with open(cls.original, encoding="utf-8") as file:
            text = file.read()
        cls.write("registry.cpp", text.replace(os.path.join(PROJECT, TABLE), cls.path(TABLE)))
        return cls.path("registry.cpp")

    @classmethod
    def compiled(cls, source):
        """As the build compiles the class table, the page's files before the project's."""
        words = list(cls.command)
        made = source + ".o"
        for option, value in (("-o", made), ("-c", source), ("-MF", made + ".d")):
            if option in words:
                words[words.index(option) + 1] = value
        compiler = next(i for i, word in enumerate(words) if word.startswith("-"))
        words.insert(compiler, f"-I{cls.path('src')}")
        subprocess.run(words, cwd=BUILD, check=True, timeout=300)
        return made

    @classmethod
    def linked(cls, target):
        """The target with the page's objects in front of the libraries that are built."""
        made = cls.path(os.path.basename(target))
        line = commands(target)[-1]
        line = re.sub(rf"-o {re.escape(target)}\b", f"-o {made} {' '.join(cls.objects)}", line)
        subprocess.run(line, shell=True, cwd=BUILD, check=True, timeout=300)
        return made

    def test_what_it_shows_is_printed(self):
        shown = re.findall(r"^```\n(\$ tavcc .*?)^```", page(), re.S | re.M)
        self.assertEqual(len(shown), 2)
        for block in shown:
            printed = ""
            for line in re.findall(r"^\$ (tavcc .*)$", block, re.M):
                answer = subprocess.run([self.tavcc, *shlex.split(line)[1:]], cwd=self.folder.name,
                                        capture_output=True, text=True, timeout=120)
                printed += f"$ {line}\n{answer.stdout}{answer.stderr}"
            # Nothing stands behind a word at the end of a line of the page.
            self.assertEqual(re.sub(r" +$", "", printed, flags=re.M), block)

    def test_the_tests_say_what_follows_from_the_row(self):
        tests = self.linked("bin/registry_tests")
        answer = subprocess.run([tests, "--gtest_filter=ServerSources.*:ClassTable.*"],
                                capture_output=True, text=True, timeout=120)
        self.assertNotEqual(answer.returncode, 0)
        told = blocks("text")
        self.assertEqual(len(told), 3)
        for path, text in told:
            self.assertIn(path, answer.stdout)
            self.assertIn(text.strip("\n"), answer.stdout)


if __name__ == "__main__":
    BUILD = os.path.abspath(sys.argv.pop(1))
    unittest.main()
