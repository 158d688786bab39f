#!/usr/bin/env python3
"""tavcc.exe speaks the language that its user has chosen in Windows.

Wine takes that language from the locale that it runs in, here one that is made for the test. The
variables by which the locale is chosen are taken away before the program starts, since they count
before what Windows says.

usage: check_language.py WINDOWS_FOLDER [unittest options]
"""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest

HERE = os.path.dirname(os.path.abspath(__file__))
FOLDER = ""

UNSET = "@echo off\r\nset LANG=\r\nset LC_ALL=\r\nset LC_MESSAGES=\r\n"
ENGLISH = "tavcc: which database? give --db FILE or --dsn STRING\n"
CHINESE = "tavcc: 哪个数据库？请给出 --db FILE 或 --dsn STRING\n"


@unittest.skipUnless(shutil.which("localedef") and os.path.exists("/usr/share/i18n/locales/zh_CN"),
                     "Debian's package locales is missing")
class Language(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.place = tempfile.TemporaryDirectory()
        subprocess.run(["localedef", "-i", "zh_CN", "-f", "UTF-8", cls.place.name + "/zh_CN.UTF-8"],
                       check=True)

    @classmethod
    def tearDownClass(cls):
        cls.place.cleanup()

    def said(self, locale, *words, variables=""):
        """What the program says of a command without its database."""
        script = os.path.join(self.place.name, "say.cmd")
        with open(script, "w", encoding="utf-8", newline="") as file:
            file.write(UNSET + variables + f"tavcc.exe check {' '.join(words)}\r\n")
        environment = {name: value for name, value in os.environ.items()
                       if name not in ("LC_ALL", "LC_MESSAGES", "LANG")}
        run = (f'. "{HERE}/wine.sh"; use_wine "{FOLDER}"; keep_wine; exec 9>&-; cd "$folder"; '
               f'exec "$wine" cmd /c "Z:{script}"')
        answer = subprocess.run(["bash", "-c", run], capture_output=True, text=True, timeout=600,
                                env=environment | {"LANG": locale, "LOCPATH": self.place.name})
        self.assertEqual((answer.returncode, answer.stdout), (2, ""), answer.stderr)
        return answer.stderr

    def test_the_users(self):
        self.assertEqual(self.said("zh_CN.UTF-8"), CHINESE)
        self.assertEqual(self.said("C.UTF-8"), ENGLISH)

    def test_the_environment_counts_before_it(self):
        self.assertEqual(self.said("zh_CN.UTF-8", variables="set LANG=en_US\r\n"), ENGLISH)

    def test_the_option_counts_before_it(self):
        self.assertEqual(self.said("zh_CN.UTF-8", "--lang", "en"), ENGLISH)
        self.assertEqual(self.said("C.UTF-8", "--lang", "zh"), CHINESE)


if __name__ == "__main__":
    FOLDER = sys.argv.pop(1)
    unittest.main()
