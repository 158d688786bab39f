#!/usr/bin/env python3
"""Inspects the automation server as a file: beside what is asked of every binary (check_binary.py),
its exports, what lies inside, and its symbols.

usage: check_module.py OBJDUMP MACHINE VERSION MODULE   (MACHINE: x86-64 or i386)
"""
import pathlib
import re
import sys

from check_binary import output_of, problems_of, report

EXPORTS = {'DllCanUnloadNow', 'DllGetClassObject', 'DllRegisterServer', 'DllUnregisterServer'}


def main():
    objdump, machine, version, module = sys.argv[1:]
    problems = list(problems_of(objdump, machine, version, module))
    text = output_of(objdump, '-p', module)
    table = text[text.index('[Ordinal/Name Pointer] Table'):]
    exports = set(re.findall(r'^\s*\[\s*\d+\] (?:\+base\[\s*\d+\]\s+\w+ )?(\w+)$', table, re.M))
    if exports != EXPORTS:
        problems.append(f'exports {sorted(exports)}')
    # A type library in its old form starts with "MSFT"; its names are plain in it.
    content = pathlib.Path(module).read_bytes()
    at = content.find(b'MSFT')
    if at < 0 or b'VerifyUnCheckForSelf' not in content[at:]:
        problems.append('carries no type library')
    if b'comInterfaceExternalProxyStub' not in content:
        problems.append('carries no manifest')
    symbols = module + '.debug'
    if not pathlib.Path(symbols).exists():
        problems.append(f'has no symbols beside it ({symbols})')
    elif 'DllGetClassObject' not in output_of(objdump, '-t', symbols):
        problems.append(f'has symbols beside it that know nothing ({symbols})')
    sys.exit(report(module, problems))


if __name__ == '__main__':
    main()
