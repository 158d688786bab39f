#!/usr/bin/env python3
"""Runs the VBScript under Wine and looks for what it must say, in order.

usage: check_script.py RUN_IN_WINE FOLDER SCRIPT
"""
import os
import subprocess
import sys

EXPECTED = [
    'Assembly bills, one by one',
    'audit 121: done',
    ' status 1, checker ',
    'audit 121 again: refused, 该单据已被审核，不能再审核！',
    'delete 121: refused, 该单据已被审核，不能删除！',
    'un-audit 121: done',
    ' status 0, checker 0',
    "delete 121: refused, Invalid object name 'FromT_CC_ZZCX'.",
    'audit 999: refused, 该单据不存在，不能审核！',
    'TransMode 3',
    'A batch of purchase bills',
    'answer 0, passed 2, refused 1',
    '编号为：CG260302的购货单单据审核成功！|',
    '编号为：CG260303的购货单单据审核成功！|',
    '编号为：CG260399的购货单单据审核失败！失败原因：该单据不存在！|',
    'The same batch taken back',
    'answer 0, passed 2, refused 1',
    '编号为：CG260302的购货单单据反审核成功！|',
    '编号为：CG260303的购货单单据反审核成功！|',
    '编号为：CG260399的购货单单据反审核失败！失败原因：该单据不存在！|',
]


def main():
    run_in_wine, folder, script = sys.argv[1:]
    run = subprocess.run([run_in_wine, folder, 'cscript', '/nologo', 'Z:' + script],
                         stdout=subprocess.PIPE, check=False, timeout=300)
    output = run.stdout.decode('utf-8', 'replace')
    print(output)
    if run.returncode != 0:
        sys.exit(f'cscript ended with {run.returncode}')
    at = 0
    for text in EXPECTED:
        found = output.find(text, at)
        if found < 0:
            sys.exit(f'not said, or not in its place: {text}')
        at = found + len(text)
    stocks = [line for line in output.splitlines() if 'stock:' in line]
    if len(stocks) != 3 or stocks[0] != stocks[2] or stocks[0] == stocks[1]:
        sys.exit(f'the batch taken back must restore the stock: {stocks}')


if __name__ == '__main__':
    main()
