#!/usr/bin/env python3
"""The manifest for registration-free use must name every class and interface of the IDL by its ids.

usage: check_manifest.py IDL MANIFEST
"""
import re
import sys
import xml.etree.ElementTree as ElementTree

NAMESPACE = '{urn:schemas-microsoft-com:asm.v1}'
MARSHALER = '{00020424-0000-0000-C000-000000000046}'  # the system's own, for type libraries


def main():
    idl = open(sys.argv[1], encoding='utf-8').read()
    library = re.search(r'uuid\(([^)]*)\),\s*version\(1\.0\)', idl)[1].upper()
    wanted = {
        f'TavM_CC_PlugIns.{name}': f'{{{class_id.upper()}}}'
        for class_id, name in re.findall(
            r'\[uuid\(([^)]*)\)[^\]]*\]\s*coclass (\w+)', idl)
    }
    root = ElementTree.parse(sys.argv[2]).getroot()
    problems = [] if len(wanted) == 10 else [f'the IDL has {len(wanted)} classes, not 10']
    found = {}
    for entry in root.iter(NAMESPACE + 'comClass'):
        found[entry.get('progid')] = entry.get('clsid')
        if entry.get('threadingModel') != 'Apartment':
            problems.append(f'{entry.get("progid")} is not apartment-threaded')
        if entry.get('tlbid') != f'{{{library}}}':
            problems.append(f'{entry.get("progid")} names another type library')
    if found != wanted:
        problems.append(f'the manifest has {found}, the IDL {wanted}')
    interfaces = {
        name: f'{{{interface_id.upper()}}}'
        for interface_id, name in re.findall(
            r'\[\s*object,\s*uuid\(([^)]*)\)[^\]]*\]\s*interface (\w+)', idl)
    }
    if len(interfaces) != 10:
        problems.append(f'the IDL has {len(interfaces)} interfaces, not 10')
    stubs = {}
    for entry in root.iter(NAMESPACE + 'comInterfaceExternalProxyStub'):
        stubs[entry.get('name')] = entry.get('iid')
        if entry.get('proxyStubClsid32') != MARSHALER:
            problems.append(f'{entry.get("name")} is not marshaled by its type library')
        if entry.get('tlbid') != f'{{{library}}}':
            problems.append(f'{entry.get("name")} names another type library')
    if stubs != interfaces:
        problems.append(f'the manifest has {stubs}, the IDL {interfaces}')
    for problem in problems:
        print(problem)
    sys.exit(1 if problems else 0)


if __name__ == '__main__':
    main()
