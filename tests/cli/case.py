"""What the command line's tests share: running tavcc, and a case with a sample database."""

import hashlib
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest

PROJECT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..")
# Of the automation server: a bill that is audited already is audited.
TRACE = os.path.join(PROJECT, "tests", "cli", "traces", "audited_twice.jsonl")
TAVCC = ""
SERVED_DATABASE = ""

PASSED, REFUSED, FAILED = 0, 1, 2

# The program may be that of Windows, run by Wine: then what another system does is not asked of it.
ON_WINDOWS = os.environ.get("TAVCC_ON") == "windows"


def unix_only(why):
    return unittest.skipIf(ON_WINDOWS, why)


ASSEMBLY_BILL = 121  # of the sample company, not audited


def tavcc(*arguments, stdin=""):
    return subprocess.run([TAVCC, *map(str, arguments)], input=stdin, capture_output=True,
                          text=True, timeout=120)


def fingerprint(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


class Case(unittest.TestCase):
    """A folder of its own with a sample database in it, made once and copied for each test."""

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.pristine = os.path.join(cls.folder.name, "pristine.db")
        made = tavcc("init", "--db", cls.pristine, "--sample")
        if made.returncode != PASSED:
            raise AssertionError(made.stderr)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def setUp(self):
        self.db = self.path("erp.db")
        with open(self.pristine, "rb") as source, open(self.db, "wb") as target:
            target.write(source.read())

    def path(self, name):
        return os.path.join(self.folder.name, name)

    def write(self, name, text):
        with open(self.path(name), "w", encoding="utf-8") as file:
            file.write(text)
        return self.path(name)

    def call(self, method, *words):
        return tavcc("call", method, "--db", self.db, *words)

    def rows(self, batch):
        answer = tavcc("sql", "--db", self.db, "--json", batch)
        self.assertEqual(answer.returncode, PASSED, answer.stderr)
        results = json.loads(answer.stdout)["results"]
        return [row for result in results for row in result.get("rows", [])]

    def change(self, batch):
        answer = tavcc("sql", "--db", self.db, batch)
        self.assertEqual(answer.returncode, PASSED, answer.stderr)

    def assert_error(self, answer, text):
        """One line on standard error that holds the text, nothing on standard output, status 2."""
        self.assertEqual(answer.returncode, FAILED, answer.stdout + answer.stderr)
        self.assertEqual(answer.stdout, "")
        self.assertEqual(answer.stderr.count("\n"), 1, answer.stderr)
        self.assertTrue(answer.stderr.startswith("tavcc: "), answer.stderr)
        self.assertIn(text, answer.stderr)


def document(name):
    """The text of a page of docs/."""
    with open(os.path.join(PROJECT, "docs", name), encoding="utf-8") as page:
        return page.read()


def follow(name, folder):
    """Runs the commands of a page of docs/ in the folder, one example after the other. Yields of
    each what the page says, commands and output, and what came."""
    environment = dict(os.environ, PATH=os.path.dirname(TAVCC) + os.pathsep + os.environ["PATH"])
    for example in re.findall(r"^```\n(\$ .*?)^```", document(name), re.S | re.M):
        came = ""
        for command in re.findall(r"^\$ (.*)$", example, re.M):
            answer = subprocess.run(["sh", "-c", command + " 2>&1"], cwd=folder, env=environment,
                                    stdout=subprocess.PIPE, text=True, timeout=120)
            came += f"$ {command}\n{answer.stdout}"
        yield example, came


def skip_without_driver(test, answer):
    """Skips a test over ODBC where its answer says that there is nothing to go over."""
    if "Can't open lib" in answer.stderr:
        test.skipTest("the driver is missing: of package tdsodbc or libsqliteodbc")
    if ON_WINDOWS and "the driver manager gives no reason" in answer.stderr:
        test.skipTest("32-bit Wine that is unpacked has no driver manager")


class Served:
    """Of a Case: its database is a server's too, reached through a driver and a server's protocol."""

    def setUp(self):
        super().setUp()
        if not os.path.exists(SERVED_DATABASE):
            self.skipTest("served_database is not built")
        server = subprocess.Popen([SERVED_DATABASE, self.db], stdin=subprocess.PIPE,
                                  stdout=subprocess.PIPE, text=True)
        self.addCleanup(server.communicate)
        port = server.stdout.readline().strip()
        self.dsn = f"Driver=FreeTDS;Server=127.0.0.1;Port={port};UID=tester;PWD=none;TDS_Version=7.4"

    def over_odbc(self, command, *words):
        answer = tavcc(command, "--dsn", self.dsn, *words)
        skip_without_driver(self, answer)
        return answer


def main(*, served=False):
    """Runs the tests of the calling file: FILE TAVCC [SERVED_DATABASE] [unittest options]."""
    global TAVCC, SERVED_DATABASE
    TAVCC = os.path.abspath(sys.argv.pop(1))
    if served:
        SERVED_DATABASE = os.path.abspath(sys.argv.pop(1))
    os.environ.pop("TAVCC_DSN", None)
    os.environ.pop("LC_ALL", None)
    os.environ["LC_MESSAGES"] = "C"
    unittest.main(module="__main__")
