"""What the command line says of itself: help, the manual page, completion by shells."""

import os
import re
import shutil
import subprocess
import tempfile
import unittest

import case
from case import FAILED, PASSED, tavcc

COMMANDS = ["demo", "init", "call", "audit", "unaudit", "run", "sql", "check", "explain",
            "refusals", "classes", "record", "help", "completion", "man"]


class Help(unittest.TestCase):
    def test_version(self):
        answer = tavcc("--version")
        self.assertEqual(answer.returncode, PASSED)
        self.assertRegex(answer.stdout, r"^tavcc \d+\.\d+\.\d+\n$")

    def test_help_of_a_command(self):
        for command in COMMANDS:
            with self.subTest(command):
                answer = tavcc("help", command)
                self.assertEqual((answer.returncode, answer.stderr), (PASSED, ""))
                self.assertIn(command, answer.stdout)
        self.assertIn("--on-error", tavcc("help", "sql").stdout)
        self.assertIn("Subcommands", tavcc("help").stdout)

    def test_did_you_mean(self):
        for arguments, meant in ((["frobnicate"], None), (["adit"], "audit"), (["sqll"], "sql"),
                                 (["help", "exlain"], "explain")):
            with self.subTest(arguments):
                answer = tavcc(*arguments)
                self.assertEqual((answer.returncode, answer.stdout), (FAILED, ""))
                said = f'tavcc: there is no command "{arguments[-1]}"'
                said += f"; did you mean {meant}?" if meant else ""
                self.assertEqual(answer.stderr, said + " (see tavcc --help)\n")


class Manual(unittest.TestCase):
    def test_it_names_every_command_and_option(self):
        page = tavcc("man").stdout
        plain = page.replace("\\-", "-")
        for command in COMMANDS:
            self.assertIn(f'.SS "tavcc {command}', plain)
            for option in re.findall(r"--[a-z-]+", tavcc("help", command).stdout):
                self.assertIn(option, plain, command)

    def test_the_formatter_has_nothing_to_say(self):
        for language, macros in (("en", []), ("zh", ["-mzh"])):
            with self.subTest(language):
                self.assert_formats(tavcc("man", "--lang", language).stdout, macros)

    def assert_formats(self, page, macros):
        if shutil.which("mandoc"):
            lint = subprocess.run(["mandoc", "-T", "lint", "-W", "warning"], input=page, text=True,
                                  capture_output=True, timeout=60)
            self.assertEqual(lint.stdout, "")
        if shutil.which("groff"):
            shown = subprocess.run(["groff", "-Kutf8", *macros, "-man", "-ww", "-Tutf8"], input=page,
                                   text=True, capture_output=True, timeout=60)
            self.assertEqual(shown.stderr, "")


class Completion(unittest.TestCase):
    def bash(self, *words):
        """What bash would complete the last word to."""
        script = tavcc("completion", "bash").stdout + (
            'COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); _tavcc; printf "%s\\n" "${COMPREPLY[@]}"')
        answer = subprocess.run(["bash", "-u", "-c", script, "bash", "tavcc", *words], text=True,
                                capture_output=True, timeout=60)
        self.assertEqual(answer.stderr, "")
        return answer.stdout.split()

    def test_bash(self):
        self.assertEqual(self.bash("au"), ["audit"])
        self.assertEqual(set(self.bash("")), {*COMMANDS, "--help", "--version"})
        self.assertEqual(self.bash("sql", "--mo"), ["--mode"])
        self.assertEqual(self.bash("sql", "--mode", "b"), ["box"])
        self.assertEqual(self.bash("sql", "--on-error", ""), ["exit", "ignore"])
        self.assertEqual(self.bash("call", "cls_CX.Audit"), ["cls_CX.AuditBill"])
        self.assertEqual(self.bash("completion", "z"), ["zsh"])
        self.assertEqual(self.bash("help", "ex"), ["explain"])
        self.assertEqual(self.bash("sql", "--timer", "--fi"), ["--file"])

    def test_bash_completes_files(self):
        with tempfile.TemporaryDirectory() as folder:
            open(os.path.join(folder, "erp.db"), "w", encoding="utf-8").close()
            self.assertEqual(self.bash("sql", "--db", folder + "/e"), [folder + "/erp.db"])

    def test_the_other_shells_read_theirs(self):
        for shell, check in (("zsh", ["zsh", "-f", "-n"]), ("fish", ["fish", "--no-execute"])):
            with self.subTest(shell):
                script = tavcc("completion", shell)
                self.assertEqual(script.returncode, PASSED)
                for word in (*COMMANDS, "mode", "on-error", "table", "cls_CX.AuditBill"):
                    self.assertIn(word, script.stdout)
                if not shutil.which(shell):
                    continue
                with tempfile.NamedTemporaryFile("w", encoding="utf-8") as file:
                    file.write(script.stdout)
                    file.flush()
                    read = subprocess.run([*check, file.name], capture_output=True, text=True,
                                          timeout=60)
                    self.assertEqual((read.returncode, read.stderr), (0, ""))

    @unittest.skipUnless(shutil.which("fish"), "there is no fish")
    def test_fish(self):
        script = tavcc("completion", "fish").stdout
        for line, words in (("tavcc au", ["audit"]), ("tavcc sql --mode b", ["box"])):
            answer = subprocess.run(["fish", "--no-config", "-c", script + f"\ncomplete -C '{line}'"],
                                    capture_output=True, text=True, timeout=60)
            found = [found.split("\t")[0] for found in answer.stdout.splitlines()]
            self.assertEqual(found, words, answer.stderr)

    def test_an_unknown_shell(self):
        answer = tavcc("completion", "csh")
        self.assertEqual(answer.returncode, FAILED)
        self.assertEqual(answer.stderr.count("\n"), 1)


DB, DSN = ("--db", "erp.db"), ("--dsn", "Driver=None")
TRACE = ("explain", "--trace", "call.jsonl")
LIST = ("run", "tests", "--list")
WITHOUT_EFFECT = (
    *((*TRACE, *words) for words in (
        ("XS260305",), ("--class", 1030002), ("--id", 7), ("--un-audit",), ("--user", 7),
        ("--deny", 1030002), ("--publish", "A=1"), ("--record", "tape.json"),
        ("--record-state", "state.json"), ("--mask", "FName"), DB, DSN, ("--dsn-file", "dsn"),
        ("--busy-timeout", 1), ("--login-timeout", 1), ("--query-timeout", 1))),
    *((*LIST, *words) for words in (
        ("--html", "page.html"), ("--junit", "out.xml"), ("--update",), ("--review",),
        ("--compare",), ("--own-database",), ("--jobs", 2), ("--trace",))),
    ("run", "tests", "--update", "--review"),
    ("explain", "XS260305", *DB, "--json", "--full"),
    ("sql", *DB, "--json", "--mode", "csv", "select 1"),
    ("sql", *DSN, "select 1", "--busy-timeout", 1),
    ("check", "--dsn-file", "dsn", "--busy-timeout", 1),
    ("check", *DB, "--login-timeout", 1),
    ("check", *DB, "--query-timeout", 1),
    ("audit", *DB, "--all", "--json", "--trace", "--rows", 3),
    ("unaudit", *DB, "--all", "--json", "--trace", "--rows", 3),
    ("call", *DB, "cls_CX.AuditBill", "lngFID=1", "--json", "--trace", "--rows", 3),
)
WITHOUT_ANOTHER = (
    (("run", "tests", "--known", "known.txt"), "--known", "--compare"),
    (("audit", *DB, "--all", "--rows", 3), "--rows", "--trace"),
    (("demo", "--rows", 3), "--rows", "--trace"),
)


class Combinations(unittest.TestCase):
    """An option that would have no effect beside another is refused in one line that names both."""

    def assert_refused(self, words, *named):
        answer = tavcc(*words)
        self.assertEqual((answer.returncode, answer.stdout), (FAILED, ""))
        self.assertRegex(answer.stderr, r"^tavcc: .*\n$")
        for name in named:
            self.assertIn(name, answer.stderr)

    def test_one_excludes_the_other(self):
        for words in WITHOUT_EFFECT:
            with self.subTest(words):
                self.assert_refused(words, " excludes ", "--")

    def test_one_is_nothing_without_the_other(self):
        for words, one, other in WITHOUT_ANOTHER:
            with self.subTest(words):
                self.assert_refused(words, f"{one} requires {other}")

    def test_what_a_command_has_no_use_for_it_does_not_take(self):
        for words in (("classes", *DB), ("refusals", *DB), ("classes", "--trace"),
                      ("record", "tape.json", "--from", "call.jsonl", *DB),
                      ("record", "tape.json", "--from", "call.jsonl", "--json"),
                      ("sql", *DB, "select 1", "--trace", "--rows", 3),
                      ("check", *DB, "--trace", "--rows", 3)):
            with self.subTest(words):
                self.assert_refused(words, "not expected")

    def test_scenarios_run_on_no_file(self):
        self.assert_refused(("run", "tests", *DB), "--db: every scenario has a database of its own",
                            "--dsn STRING")

    def test_the_refusal_is_told_in_chinese_too(self):
        self.assert_refused(("--lang", "zh", *LIST, "--update"), "--list", "--update", "不能与")


if __name__ == "__main__":
    case.main()
