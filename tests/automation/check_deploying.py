#!/usr/bin/env python3
"""Every component and member that the server calls stands in roles.h and in the page on deploying.

usage: check_deploying.py SOURCE_DIR
"""
import pathlib
import re
import sys


def main():
    root = pathlib.Path(sys.argv[1])
    automation = root / 'src' / 'automation'
    roles = (automation / 'roles.h').read_text(encoding='utf-8')
    page = (root / 'docs' / 'deploying-on-windows.md').read_text(encoding='utf-8')
    called = set(re.findall(r'L"([\w.]+)"', roles))
    for name in ('com_host.cpp', 'objects.cpp'):
        text = (automation / name).read_text(encoding='utf-8')
        calls = r'\b(?:Get|Put|PutReference|Call\w*)\(\s*L"(\w+)"'
        called |= set(re.findall(calls, text))
    problems = [] if len(called) > 40 else [f'only these were found: {sorted(called)}']
    for name in sorted(called):
        for where, text in (('src/automation/roles.h', roles), ('the page on deploying', page)):
            if not re.search(rf'\b{re.escape(name)}\b', text):
                problems.append(f'{name} is not in {where}')
    # What is a guess in the one is a guess in the other.
    for name in re.findall(r'= L"(\w+)";\s*// a guess', roles):
        if not re.search(rf'`{name}\b[^|]*?\(guess', page):
            problems.append(f'{name} is no guess in the page on deploying')
    for problem in problems:
        print(problem)
    sys.exit(1 if problems else 0)


if __name__ == '__main__':
    main()
