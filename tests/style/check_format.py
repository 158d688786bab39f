#!/usr/bin/env python3
"""Every C++ file is as clang-format leaves it.

usage: check_format.py SOURCE_DIR CLANG_FORMAT
"""

import subprocess
import sys


def main():
    root, clang_format = sys.argv[1:3]
    sys.path.insert(0, root + "/tests/style")
    from check_style import tracked_files

    files = [path for path in tracked_files(root) if path.endswith((".h", ".cpp"))]
    result = subprocess.run([clang_format, "--dry-run", "-Werror", *files], cwd=root,
                            capture_output=True, text=True)
    wrong = sorted({line.split(":")[0] for line in result.stderr.splitlines()
                    if "clang-format-violations" in line})
    for path in wrong:
        print(f"{path}: run clang-format -i {path}")
    if result.returncode != 0 and not wrong:
        print(result.stderr)
    print(f"{len(files)} files, {len(wrong)} to be formatted")
    return 1 if wrong or result.returncode != 0 else 0


if __name__ == "__main__":
    sys.exit(main())
