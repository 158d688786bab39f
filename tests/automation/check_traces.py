#!/usr/bin/env python3
"""Runs the VBScript under Wine with traces: it says the same as without, and each trace is
explained and becomes a tape that replays, some of them together.

usage: check_traces.py RUN_IN_WINE FOLDER SCRIPT TAVCC
"""
import glob
import json
import os
import subprocess
import sys
import tempfile

# The calls of the script, and what `tavcc explain --trace` says of each.
CALLS = [('cls_CX.AuditBill', 'passed'), ('cls_CX.AuditBill', 'refused'),
         ('cls_CX.DeleteBill', 'refused'), ('cls_CX.UnAuditBill', 'passed'),
         ('cls_CX.DeleteBill', 'failed'), ('cls_CX.AuditBill', 'refused'),
         ('PublicSysInfo.AuditBill', 'refused'), ('PublicSysInfo.AuditBill', 'refused')]
EXIT = {'passed': 0, 'refused': 1, 'failed': 2}


def run_script(run_in_wine, folder, script, traces):
    environment = dict(os.environ, TAVM_CC_TRACE='Z:' + traces if traces else '')
    run = subprocess.run([run_in_wine, folder, 'cscript', '/nologo', 'Z:' + script],
                         stdout=subprocess.PIPE, check=False, timeout=300, env=environment)
    if run.returncode != 0:
        sys.exit(f'cscript ended with {run.returncode}')
    return run.stdout.decode('utf-8', 'replace')


def require(condition, what):
    if not condition:
        sys.exit(what)


class Traces:
    def __init__(self, tavcc, folder):
        self.tavcc, self.folder = tavcc, folder
        # Of one process: its number in the name tells the order.
        self.files = sorted(glob.glob(os.path.join(folder, '*.jsonl')),
                            key=lambda file: int(os.path.basename(file).split('-')[5]))

    def run(self, *words):
        return subprocess.run([self.tavcc, *words], capture_output=True, text=True, timeout=120,
                              check=False)

    def check_explained(self):
        require(len(self.files) == len(CALLS), f'{len(self.files)} traces of {len(CALLS)} calls')
        for file, (call, verdict) in zip(self.files, CALLS):
            answer = self.run('explain', '--json', '--trace', file)
            require(answer.returncode == EXIT[verdict],
                    f'{file}: {answer.returncode}, {answer.stderr}')
            explained = json.loads(answer.stdout)
            require((explained['call'], explained['verdict']) == (call, verdict),
                    f"{file}: {explained['call']} {explained['verdict']}")
            require(explained['statements'], f'{file}: no statement')

    def record(self, name, *files):
        tape = os.path.join(self.folder, name)
        answer = self.run('record', tape, '--from', *files)
        require(answer.returncode == 0, f'{files}: {answer.stderr}')
        with open(tape, encoding='utf-8') as source:
            return json.load(source)['steps']

    def check_replayed(self):
        for number, (file, (call, _)) in enumerate(zip(self.files, CALLS), 1):
            steps = self.record(f'{number}.json', file)
            require([step['call'] for step in steps] == [call], f'{file}: {steps}')
            require(steps[0]['tape'], f'{file}: an empty tape')
        together = self.record('together.json', *self.files[:6])
        require(len(together) == 6, f'{len(together)} calls of one object')
        answer = self.run('run', *sorted(glob.glob(os.path.join(self.folder, '*.json'))))
        require((answer.returncode, answer.stdout) == (0, f'{len(CALLS) + 1} scenarios passed\n'),
                answer.stdout + answer.stderr)


def main():
    run_in_wine, folder, script, tavcc = sys.argv[1:]
    with tempfile.TemporaryDirectory() as traces:
        without = run_script(run_in_wine, folder, script, None)
        traced = run_script(run_in_wine, folder, script, traces)
        require(traced == without, f'with traces the script says\n{traced}\nwithout\n{without}')
        checked = Traces(tavcc, traces)
        checked.check_explained()
        checked.check_replayed()
    print(f'{len(CALLS)} traces explained and replayed')


if __name__ == '__main__':
    main()
