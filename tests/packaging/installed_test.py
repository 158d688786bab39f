#!/usr/bin/env python3
"""An installed copy: what `cmake --install` puts where, and programs that are built on it alone.

usage: installed_test.py BUILD_FOLDER [unittest options]
"""

import glob
import os
import re
import subprocess
import sys
import tempfile
import unittest

PROJECT = os.path.abspath(os.path.join(os.path.dirname(__file__), "../.."))
BUILD = ""


def run(*command, **options):
    return subprocess.run(command, capture_output=True, text=True, timeout=600, **options)


class Installed(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.prefix = os.path.join(cls.folder.name, "prefix")
        answer = run("cmake", "--install", BUILD, "--prefix", cls.prefix)
        if answer.returncode != 0:
            raise AssertionError(answer.stdout + answer.stderr)

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def path(self, *names):
        return os.path.join(self.prefix, *names)

    def configured(self, source, folder, *options):
        return run("cmake", "-S", os.path.join(PROJECT, source), "-B", folder, "-G", "Ninja",
                   "-DCMAKE_PREFIX_PATH=" + self.prefix, "-DCMAKE_CXX_FLAGS=-O0 -Wall -Wextra -Werror",
                   *options)

    def built(self, source, *options):
        """The folder with what was built of a project that finds nothing but the installed copy."""
        folder = tempfile.mkdtemp(dir=self.folder.name)
        for answer in (self.configured(source, folder, *options), run("cmake", "--build", folder)):
            self.assertEqual(answer.returncode, 0, answer.stdout + answer.stderr)
        return folder

    def test_the_tool_runs(self):
        answer = run(self.path("bin/tavcc"), "--version")
        self.assertRegex(answer.stdout, r"^tavcc \d+\.\d+\.\d+\n$")

    def manual_page(self, folder):
        answer = run("gzip", "-cd", self.path("share/man", folder, "tavcc.1.gz"))
        self.assertTrue(answer.stdout.startswith(".TH TAVCC 1"), answer.stdout[:80])
        return answer.stdout

    def test_the_manual_page_is_one(self):
        self.assertIn("\n.SH NAME\ntavcc \\- business rules", self.manual_page("man1"))

    def test_the_manual_page_is_there_in_chinese_too(self):
        english, chinese = self.manual_page("man1"), self.manual_page("zh_CN/man1")
        self.assertIn("\n.SH 名称\ntavcc \\- 在命令行上运行", chinese)
        heads = r'^\.SS "tavcc .*|^\\fB\\-.*'  # commands and options
        self.assertEqual(re.findall(heads, chinese, re.M), re.findall(heads, english, re.M))
        self.assertGreater(len(re.findall(heads, chinese, re.M)), 50)

    def test_bash_completes(self):
        script = self.path("share/bash-completion/completions/tavcc")
        answer = run("bash", "-c", f'. "{script}"; COMP_WORDS=(tavcc exp); COMP_CWORD=1; _tavcc; '
                                   'echo "${COMPREPLY[@]}"')
        self.assertEqual((answer.stdout, answer.stderr), ("explain\n", ""))

    def test_other_shells_know_whose_the_completion_is(self):
        for path, first in (("zsh/site-functions/_tavcc", "#compdef tavcc\n"),
                            ("fish/vendor_completions.d/tavcc.fish", "# Completion of tavcc for fish")):
            with open(self.path("share", path), encoding="utf-8") as file:
                self.assertTrue(file.readline().startswith(first), path)

    def test_nothing_names_the_build(self):
        """The package works wherever it is moved to, and tells nobody where it was made."""
        for path in glob.glob(self.path("lib*/**/*.cmake"), recursive=True):
            with open(path, encoding="utf-8") as file:
                text = file.read()
            self.assertNotIn(PROJECT, text, path)
            self.assertNotIn("-Werror", text, path)

    def test_a_public_header_includes_public_headers_alone(self):
        """Each compiles by itself, in both ways of naming it."""
        include = self.path("include")
        headers = [os.path.relpath(path, include)
                   for path in glob.glob(include + "/tavcc/**/*.h", recursive=True)]
        self.assertGreater(len(headers), 30)
        for header in headers:
            with open(os.path.join(include, header), encoding="utf-8") as file:
                for name in re.findall(r'^#include "(.*)"', file.read(), re.M):
                    self.assertTrue(os.path.exists(os.path.join(include, "tavcc", name)),
                                    f"{header} includes {name}, which is not installed")
        source = "".join(f"#include <{header}>\n" for header in sorted(headers))
        answer = run("c++", "-std=c++20", "-fsyntax-only", "-Wall", "-Wextra", "-Werror", "-I", include,
                     "-I", include + "/tavcc", "-x", "c++", "-", input=source)
        self.assertEqual(answer.returncode, 0, answer.stderr)

    def test_each_component_by_itself(self):
        for components, says in (
                ("rules", "10 classes, AuditBill has 4 arguments\n"),
                ("embedded", "车架12.50\n"),
                ("odbc", "cannot connect to \"Driver=no such driver;PWD=***\": "
                         "Can't open lib 'no such driver' : file not found\n"),
                ("host;rules", "True \nFalse 该单据已被审核，不能再审核！\n"),
        ):
            with self.subTest(components):
                folder = self.built("tests/packaging/consumer", "-DCOMPONENTS=" + components)
                self.assertEqual(run(folder + "/consumer").stdout, says)

    def test_a_component_that_is_none(self):
        answer = self.configured("tests/packaging/consumer", tempfile.mkdtemp(dir=self.folder.name),
                                 "-DCOMPONENTS=embeded")
        self.assertNotEqual(answer.returncode, 0)
        self.assertIn('There is no component "embeded"; there are rules, embedded, odbc, host',
                      " ".join(answer.stderr.split()))

    def test_the_example_of_the_page(self):
        folder = self.built("examples/embedded")
        answer = run(folder + "/price_list")
        self.assertEqual(answer.returncode, 0, answer.stdout)
        with open(os.path.join(PROJECT, "docs/embedded.md"), encoding="utf-8") as page:
            shown = re.search(r"^\$ build/example/price_list\n(.*?)^```", page.read(), re.M | re.S)[1]
        self.assertEqual(answer.stdout, shown)


if __name__ == "__main__":
    BUILD = os.path.abspath(sys.argv.pop(1))
    unittest.main()
