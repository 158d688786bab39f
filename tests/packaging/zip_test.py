#!/usr/bin/env python3
"""The zip for Windows: what is in it, and that it works where it is unpacked.

usage: zip_test.py BUILD_FOLDER WINE_SCRIPT [unittest options]
"""

import glob
import os
import re
import subprocess
import sys
import tempfile
import unittest
import zipfile

BUILD = WINE = ""


def run(*command, **options):
    return subprocess.run(command, capture_output=True, text=True, timeout=600, **options)


class Zip(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        answer = run("cpack", "-B", cls.folder.name, cwd=BUILD)
        if answer.returncode != 0:
            raise AssertionError(answer.stdout + answer.stderr)
        [cls.zip] = glob.glob(cls.folder.name + "/*.zip")
        with zipfile.ZipFile(cls.zip) as file:
            file.extractall(cls.folder.name + "/unpacked")
        [cls.unpacked] = glob.glob(cls.folder.name + "/unpacked/*")

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def content(self, name):
        with open(os.path.join(self.unpacked, name), "rb") as file:
            return file.read()

    def test_is_named_after_version_and_bitness(self):
        bits = "64" if "windows64" in BUILD else "32"
        self.assertRegex(os.path.basename(self.zip), rf"^tavcc-\d+\.\d+\.\d+-windows{bits}\.zip$")
        self.assertIn(f"{bits} bit".encode(), self.content("README.txt"))

    def test_files(self):
        self.assertEqual(set(os.listdir(self.unpacked)), {
            "NOTICES.txt", "README.txt", "TavM_CC_PlugIns.dll", "TavM_CC_PlugIns.manifest",
            "TavM_CC_PlugIns.tlb", "demo.cmd", "tavcc.exe"})

    def test_lines_end_as_on_windows(self):
        for name in ("README.txt", "NOTICES.txt", "demo.cmd"):
            content = self.content(name)
            self.assertIn(b"\r\n", content, name)
            self.assertIsNone(re.search(rb"(?<!\r)\n|\r(?!\n)|@\w+@", content), name)

    def test_the_type_library_and_the_manifest_are_the_servers(self):
        server = self.content("TavM_CC_PlugIns.dll")
        for name in ("TavM_CC_PlugIns.tlb", "TavM_CC_PlugIns.manifest"):
            self.assertIn(self.content(name), server, name)

    def in_wine(self, *command):
        """The command, run in the unpacked folder by the Wine of the tests under Wine."""
        script = f'. "{WINE}"; use_wine "{BUILD}/bin"; keep_wine; exec 9>&-; cd "{self.unpacked}"; exec "$wine" "$@"'
        return run("bash", "-c", script, "bash", *command)

    def test_the_demonstration(self):
        answer = self.in_wine("cmd", "/c", "demo.cmd")
        self.assertEqual(answer.returncode, 0, answer.stderr)
        self.assertIn("编号为：CD260301的采购订单单据审核成功！", answer.stdout)
        self.assertIn("passed: 22, refused: 10", answer.stdout)

    def test_the_demonstration_tells_of_what_is_wrong(self):
        answer = self.in_wine("cmd", "/c", "demo.cmd", "--bogus")
        self.assertEqual(answer.returncode, 2)
        self.assertIn("--bogus", answer.stderr)

    def test_the_server_registers_where_it_lies(self):
        answer = self.in_wine("regsvr32", "/s", "TavM_CC_PlugIns.dll")
        self.assertEqual(answer.returncode, 0, answer.stdout + answer.stderr)
        taken_back = self.in_wine("regsvr32", "/s", "/u", "TavM_CC_PlugIns.dll")
        self.assertEqual(taken_back.returncode, 0)


if __name__ == "__main__":
    BUILD = os.path.abspath(sys.argv.pop(1))
    WINE = os.path.abspath(sys.argv.pop(1))
    unittest.main()
