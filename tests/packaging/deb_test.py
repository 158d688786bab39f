#!/usr/bin/env python3
"""The Debian packages: what is in them, what lintian says, and whether they work in a clean root.

usage: deb_test.py BUILD_FOLDER [unittest options]

TAVCC_CLEAN_ROOT=1 makes a clean root with debootstrap, which takes minutes and downloads a Debian.
"""

import glob
import os
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

BUILD = ""


def run(*command, **options):
    return subprocess.run(command, capture_output=True, text=True, timeout=1500, **options)


class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        answer = run("cpack", "-G", "DEB", "-B", cls.folder.name, cwd=BUILD)
        if answer.returncode != 0:
            raise AssertionError(answer.stdout + answer.stderr)
        cls.packages = {os.path.basename(path).split("_")[0]: path
                        for path in glob.glob(cls.folder.name + "/*.deb")}

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def field(self, package, name):
        return run("dpkg-deb", "-f", self.packages[package], name).stdout.strip()

    def files(self, package):
        answer = run("dpkg-deb", "-c", self.packages[package])
        return {line.split()[5][1:]: line.split()[:2] for line in answer.stdout.splitlines()}

    def test_there_are_two(self):
        self.assertEqual(set(self.packages), {"tavcc", "libtavcc-dev"})

    def test_the_tool_depends_on_what_it_is_linked_with(self):
        depends = re.sub(r" \([^)]*\)", "", self.field("tavcc", "Depends")).split(", ")
        for library in ("libc6", "libedit2", "libodbc2", "libsqlite3-0", "libstdc++6"):
            self.assertIn(library, depends)

    def test_the_library_depends_on_the_headers_of_what_it_is_linked_with(self):
        self.assertEqual(self.field("libtavcc-dev", "Depends"), "libsqlite3-dev, unixodbc-dev")

    def test_files_of_the_tool(self):
        files = self.files("tavcc")
        self.assertEqual({path for path in files if not path.endswith("/")}, {
            "/usr/bin/tavcc",
            "/usr/share/bash-completion/completions/tavcc",
            "/usr/share/doc/tavcc/changelog.Debian.gz",
            "/usr/share/doc/tavcc/changelog.gz",
            "/usr/share/doc/tavcc/copyright",
            "/usr/share/fish/vendor_completions.d/tavcc.fish",
            "/usr/share/lintian/overrides/tavcc",
            "/usr/share/man/man1/tavcc.1.gz",
            "/usr/share/man/zh_CN/man1/tavcc.1.gz",
            "/usr/share/zsh/vendor-completions/_tavcc",
        })
        self.assertEqual({owner for _, owner in files.values()}, {"root/root"})

    def test_files_of_the_library(self):
        files = self.files("libtavcc-dev")
        for path in ("/usr/include/tavcc/embedded/embedded.h", "/usr/lib/libtavcc_embedded.a",
                     "/usr/lib/cmake/tavcc/tavcc-config.cmake",
                     "/usr/share/doc/libtavcc-dev/copyright"):
            self.assertIn(path, files)
        self.assertFalse([path for path in files if path.startswith("/usr/bin")])

    def test_whose_libraries_are_compiled_in(self):
        folder = os.path.join(self.folder.name, "unpacked")
        run("dpkg-deb", "-x", self.packages["tavcc"], folder)
        with open(folder + "/usr/share/doc/tavcc/copyright", encoding="utf-8") as file:
            text = file.read()
        for library in ("CLI11", "fmt", "JSON for Modern C++"):
            self.assertIn(f"---- {library} ----\n\nFormat:", text)

    def test_lintian(self):
        if shutil.which("lintian") is None:
            self.skipTest("lintian is not installed")
        answer = run("lintian", "--fail-on", "error,warning", "--allow-root",
                     *self.packages.values())
        self.assertEqual((answer.returncode, answer.stdout), (0, ""), answer.stderr)

    def test_in_a_clean_root(self):
        if os.environ.get("TAVCC_CLEAN_ROOT") != "1":
            self.skipTest("TAVCC_CLEAN_ROOT=1 is not set: it downloads a Debian")
        if os.geteuid() != 0 or shutil.which("debootstrap") is None:
            self.skipTest("a clean root wants root and debootstrap")
        root = os.path.join(self.folder.name, "root")
        made = run("debootstrap", "--variant=minbase", release(), root, mirror())
        if made.returncode != 0:
            self.skipTest("debootstrap: " + made.stdout[-200:])
        for path in self.packages.values():
            shutil.copy(path, root + "/tmp")
        # The script ends at the first command that fails.
        answer = run("chroot", root, "sh", "-e", "-c", CLEAN_ROOT_SCRIPT)
        self.assertEqual(answer.returncode, 0, answer.stdout[-2000:] + answer.stderr[-2000:])
        self.assertIn("cls_CX.AuditBill passed", answer.stdout)
        self.assertTrue(answer.stdout.endswith("nothing is left\n"), answer.stdout[-500:])


# Installs the tool with what it depends on, runs it, and takes it away again.
CLEAN_ROOT_SCRIPT = """
export DEBIAN_FRONTEND=noninteractive
apt-get update
apt-get install -y --no-install-recommends /tmp/tavcc_*.deb
tavcc --version
tavcc init --db /tmp/erp.db --sample
tavcc call cls_CX.AuditBill --db /tmp/erp.db lngFID=121 lngUserID=7
apt-get purge -y tavcc
if find /usr -name '*tavcc*' | grep .; then exit 1; fi
echo nothing is left
"""


def release():
    with open("/etc/os-release", encoding="utf-8") as file:
        return re.search(r"^VERSION_CODENAME=(\w+)", file.read(), re.M)[1]


def mirror():
    """Where this machine's own packages come from."""
    answer = run("apt-get", "indextargets", "--format", "$(REPO_URI)", "Created-By: Packages")
    return answer.stdout.split()[0]


if __name__ == "__main__":
    BUILD = os.path.abspath(sys.argv.pop(1))
    unittest.main()
