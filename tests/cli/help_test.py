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
        page = tavcc("man").stdout
        if shutil.which("mandoc"):
            lint = subprocess.run(["mandoc", "-T", "lint", "-W", "warning"], input=page, text=True,
                                  capture_output=True, timeout=60)
            self.assertEqual(lint.stdout, "")
        if shutil.which("groff"):
            shown = subprocess.run(["groff", "-Kutf8", "-man", "-ww", "-Tutf8"], input=page, text=True,
                                   capture_output=True, timeout=60)
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


class Run(unittest.TestCase):
    def test_a_database_that_is_not_there(self):
        with tempfile.TemporaryDirectory() as folder:
            answer = tavcc("run", "--db", folder + "/none.db", folder)
            self.assertEqual(answer.returncode, FAILED)
            self.assertEqual(answer.stderr, f"tavcc: error 50002: {folder}/none.db: does not exist\n")


if __name__ == "__main__":
    case.main()
