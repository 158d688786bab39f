#!/usr/bin/env python3
"""Inspects a Windows program or module as a file: machine, what it needs, its version, and how it
may be loaded.

usage: check_binary.py OBJDUMP MACHINE VERSION FILE…   (MACHINE: x86-64 or i386)
"""
import pathlib
import re
import subprocess
import sys

# Parts of Windows. Anything else would have to stand beside the file.
SYSTEM = {'advapi32.dll', 'kernel32.dll', 'msvcrt.dll', 'odbc32.dll', 'ole32.dll', 'oleaut32.dll',
          'shell32.dll', 'user32.dll'}

VERSION_KEYS = ['CompanyName', 'FileDescription', 'FileVersion', 'InternalName', 'LegalCopyright',
                'OriginalFilename', 'ProductName', 'ProductVersion']
# Windows 7 and Windows Server 2008 R2, as docs/deploying-on-windows.md says.
SYSTEM_VERSION = {'MajorOSystemVersion': 6, 'MinorOSystemVersion': 1,
                  'MajorSubsystemVersion': 6, 'MinorSubsystemVersion': 1}
# Loaded anywhere; data is not run. Only 64 bits have far more room for "anywhere".
LOADING = {'i386': {'DYNAMIC_BASE', 'NX_COMPAT'},
           'x86-64': {'DYNAMIC_BASE', 'NX_COMPAT', 'HIGH_ENTROPY_VA'}}


def output_of(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, check=True, text=True).stdout


def version_problems(content, version, name):
    wanted = dict.fromkeys(VERSION_KEYS, '')
    wanted.update(FileVersion=version, ProductVersion=version, OriginalFilename=name)
    for key, value in wanted.items():
        # The key, its end, as many zeros as bring the value to a multiple of four bytes.
        pattern = (key + '\0').encode('utf-16-le') + b'(?:\0\0)?' + value.encode('utf-16-le')
        if not re.search(pattern, content):
            yield f'has no {key} {value} in its version'


def problems_of(objdump, machine, version, path):
    text = output_of(objdump, '-p', path)
    if f'file format pei-{machine}' not in text:
        yield f'is no {machine} binary'
    needed = {name.lower() for name in re.findall(r'DLL Name: (\S+)', text)}
    if not needed <= SYSTEM:
        yield f'needs {sorted(needed - SYSTEM)} beside it'
    yield from version_problems(pathlib.Path(path).read_bytes(), version, pathlib.Path(path).name)
    for field, wanted in SYSTEM_VERSION.items():
        if not re.search(rf'^{field}\s+{wanted}$', text, re.M):
            yield f'has another {field} than {wanted}'
    flags = set(re.findall(r'^\s+([A-Z_]+)$', text, re.M))
    for flag in sorted(LOADING[machine] - flags):
        yield f'is not {flag}'
    headers = output_of(objdump, '-h', path)
    if '.reloc' not in headers:
        yield 'has no relocations: it is loaded at one address alone'
    if re.search(r'\.debug_(info|line)', headers):
        yield 'carries its symbols'


def report(path, problems):
    for problem in problems:
        print(f'{path} {problem}')
    return 1 if problems else 0


def main():
    objdump, machine, version, *paths = sys.argv[1:]
    sys.exit(max(report(path, list(problems_of(objdump, machine, version, path)))
                 for path in paths))


if __name__ == '__main__':
    main()
