#!/usr/bin/env python3
"""Inspects the automation server as a file: machine, exports, what it needs, what lies inside.

usage: check_module.py OBJDUMP MACHINE MODULE   (MACHINE: x86-64 or i386)
"""
import pathlib
import re
import subprocess
import sys

EXPORTS = {'DllCanUnloadNow', 'DllGetClassObject', 'DllRegisterServer', 'DllUnregisterServer'}
# Parts of Windows. Anything else would have to stand beside the server.
SYSTEM = {'advapi32.dll', 'kernel32.dll', 'msvcrt.dll', 'ole32.dll', 'oleaut32.dll', 'user32.dll'}

VERSION_KEYS = ['CompanyName', 'FileDescription', 'FileVersion', 'InternalName', 'LegalCopyright',
                'OriginalFilename', 'ProductName', 'ProductVersion']
# Windows 7 and Windows Server 2008 R2, as docs/deploying-on-windows.md says.
SYSTEM_VERSION = {'MajorOSystemVersion': 6, 'MinorOSystemVersion': 1,
                  'MajorSubsystemVersion': 6, 'MinorSubsystemVersion': 1}


def headers_of(objdump, module):
    return subprocess.run([objdump, '-h', module], stdout=subprocess.PIPE, check=True,
                          text=True).stdout


def main():
    objdump, machine, module = sys.argv[1:]
    text = subprocess.run([objdump, '-p', module], stdout=subprocess.PIPE, check=True,
                          text=True).stdout
    problems = []
    if f'file format pei-{machine}' not in text:
        problems.append(f'is no {machine} module')
    table = text[text.index('[Ordinal/Name Pointer] Table'):]
    exports = set(re.findall(r'^\s*\[\s*\d+\] (?:\+base\[\s*\d+\]\s+\w+ )?(\w+)$', table, re.M))
    if exports != EXPORTS:
        problems.append(f'exports {sorted(exports)}')
    needed = {name.lower() for name in re.findall(r'DLL Name: (\S+)', text)}
    if not needed <= SYSTEM:
        problems.append(f'needs {sorted(needed - SYSTEM)} beside it')
    # A type library in its old form starts with "MSFT"; its names are plain in it.
    content = pathlib.Path(module).read_bytes()
    at = content.find(b'MSFT')
    if at < 0 or b'VerifyUnCheckForSelf' not in content[at:]:
        problems.append('carries no type library')
    if b'comInterfaceExternalProxyStub' not in content:
        problems.append('carries no manifest')
    for key in VERSION_KEYS:
        if key.encode('utf-16-le') not in content:
            problems.append(f'has no {key} in its version')
    for field, wanted in SYSTEM_VERSION.items():
        if not re.search(rf'^{field}\s+{wanted}$', text, re.M):
            problems.append(f'has another {field} than {wanted}')
    if re.search(r'\.debug_(info|line)', headers_of(objdump, module)):
        problems.append('carries its symbols')
    symbols = module + '.debug'
    if not pathlib.Path(symbols).exists():
        problems.append(f'has no symbols beside it ({symbols})')
    elif 'DllGetClassObject' not in subprocess.run([objdump, '-t', symbols], check=True, text=True,
                                                   stdout=subprocess.PIPE).stdout:
        problems.append(f'has symbols beside it that know nothing ({symbols})')
    for problem in problems:
        print(f'{module} {problem}')
    sys.exit(1 if problems else 0)


if __name__ == '__main__':
    main()
