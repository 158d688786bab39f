"""docs/reference is what its sources make of it: written again, every page is the same.

usage: reference_test.py TAVCC
"""

import os
import subprocess
import sys
import tempfile
import unittest

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "../.."))
SCRIPT = os.path.join(ROOT, "scripts/reference.py")
PAGES = os.path.join(ROOT, "docs/reference")
TAVCC = ""


def contents(folder):
    pages = {}
    for name in sorted(os.listdir(folder)):
        with open(os.path.join(folder, name), encoding="utf-8", newline="") as file:
            pages[name] = file.read()
    return pages


class Reference(unittest.TestCase):
    def test_no_page_is_older_than_its_sources(self):
        with tempfile.TemporaryDirectory() as folder:
            made = subprocess.run([sys.executable, SCRIPT, TAVCC, "--out", folder],
                                  capture_output=True, text=True, timeout=300)
            self.assertEqual((made.returncode, made.stdout), (0, ""), made.stderr)
            new, kept = contents(folder), contents(PAGES)
        stale = sorted(name for name in new.keys() | kept.keys() if new.get(name) != kept.get(name))
        self.assertEqual(stale, [], "pages of docs/reference are older than their sources; write them "
                         f"again with: scripts/reference.py {os.path.relpath(TAVCC, ROOT)}")

    def test_it_is_whole(self):
        pages = contents(PAGES)
        self.assertGreater(len(pages), 12)
        # A method with all that a page says of one, as a reader of the page finds it.
        text = pages["PublicSysInfo.md"].split("\n## CheckCredit\n")[1].split("\n## ")[0]
        for part in ("I2 CheckCredit(Bzo.Dictionary oDict, I2 intCheckType, BSTR sDsn, in/out BSTR "
                     "strReturnMsg, [in/out BOOL Cg])", "Slot 5, dispatch id 0x60030008; only reads",
                     "| `CustOrSupplyID` | long | in | the bill's customer or supplier | 单据的客户或供应商 |",
                     "| `1` | the credit line is exceeded | 超出信用额度 |",
                     "[credit.exceeded](refusals.md#creditexceeded)",
                     "strReturnMsg    当前客户的信用额度为：20000，截止到本次往来余额已经超出。"):
            self.assertIn(part, text)

    def test_other_files_of_the_folder_stay(self):
        with tempfile.TemporaryDirectory() as folder:
            for name, text in (("notes.md", "mine\n"), ("old.md", contents(PAGES)["cls_CX.md"])):
                with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                    file.write(text)
            subprocess.run([sys.executable, SCRIPT, TAVCC, "--out", folder], check=True, timeout=300)
            self.assertTrue(os.path.exists(os.path.join(folder, "notes.md")))
            self.assertFalse(os.path.exists(os.path.join(folder, "old.md")))

    def test_a_program_that_is_none(self):
        made = subprocess.run([sys.executable, SCRIPT, "/no/such/tavcc"], capture_output=True, text=True,
                              timeout=60)
        self.assertEqual((made.returncode, made.stdout), (1, ""))
        self.assertEqual(made.stderr.count("\n"), 1, made.stderr)
        self.assertTrue(made.stderr.startswith("reference.py: "), made.stderr)


if __name__ == "__main__":
    TAVCC = os.path.abspath(sys.argv.pop(1))
    unittest.main()
