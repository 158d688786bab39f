"""What the attacks on tavcc share: the sample database, its contents, the shim, the judge.

usage of each attack: ATTACK.py TAVCC [SHIM] [--all] [--seed N]
"""

import argparse
import json
import os
import re
import shutil
import sqlite3
import subprocess
import tempfile

PASSED, REFUSED, FAILED = 0, 1, 2
KILLED = -9

# Words of the libraries beneath, and of a program that fell over. None of them is for a user.
FOREIGN_WORDS = re.compile(
    r"json\.exception|std::|no such (column|table|index)|syntax error|malformed|basic_string|"
    r"vector::|map::at|terminate called|what\(\)|bad_alloc|Assertion|sqlite|nlohmann|"
    r"ERROR: AddressSanitizer|runtime error:|ThreadSanitizer", re.IGNORECASE)


def options():
    parser = argparse.ArgumentParser()
    parser.add_argument("tavcc")
    parser.add_argument("shim", nargs="?")
    parser.add_argument("--all", action="store_true", default=os.environ.get("TAVCC_ATTACKS") == "all")
    parser.add_argument("--seed", type=int, default=20260315)
    return parser.parse_args()


class Attack:
    def __init__(self, given):
        self.tavcc = os.path.abspath(given.tavcc)
        self.shim = given.shim and os.path.abspath(given.shim)
        self.all = given.all
        self.seed = given.seed
        self.folder = tempfile.mkdtemp(prefix="tavcc_attack_")
        self.tried = 0
        self.problems = []
        os.environ.pop("TAVCC_DSN", None)

    def path(self, name):
        return os.path.join(self.folder, name)

    def run(self, *arguments, shim=None, stdin=b""):
        environment = dict(os.environ)
        if shim is not None:
            environment.update({f"SHIM_{key}": str(value) for key, value in shim.items()})
            preload = [environment.get("LD_PRELOAD", ""), self.shim]
            environment["LD_PRELOAD"] = ":".join(part for part in preload if part)
            # The shim stands before the sanitizers' own libraries.
            environment["ASAN_OPTIONS"] = "verify_asan_link_order=0:" + environment.get(
                "ASAN_OPTIONS", "")
        answer = subprocess.run([self.tavcc, *map(os.fsencode, map(str, arguments))], input=stdin,
                                capture_output=True, cwd=self.folder, env=environment, timeout=600)
        self.tried += 1
        self.judge_words(answer, arguments)
        return answer

    def judge_words(self, answer, arguments):
        said = (answer.stdout + answer.stderr).decode("utf-8", "replace")
        # What the user said comes back in quotes; it is not ours.
        own = said
        for argument in arguments:
            own = own.replace(str(argument), "")
        word = FOREIGN_WORDS.search(own)
        if word:
            self.problem(f"{word.group(0)!r} in the output of {arguments}: {said[:400]}")
        try:
            (answer.stdout + answer.stderr).decode("utf-8")
        except UnicodeDecodeError:
            self.problem(f"the output of {arguments} is not UTF-8")

    def problem(self, text):
        self.problems.append(text)
        print("PROBLEM:", text, flush=True)

    def expect(self, holds, text):
        if not holds:
            self.problem(text)

    def prepare(self):
        """The sample company's file, made once."""
        pristine = self.path("pristine")
        if not os.path.exists(pristine):
            made = self.run("init", "--db", pristine, "--sample")
            assert made.returncode == PASSED, made.stderr
        return pristine

    def fresh(self, name="erp.db"):
        """A copy of it, without any journal."""
        for ending in ("", "-wal", "-shm", "-journal"):
            if os.path.exists(self.path(name) + ending):
                os.remove(self.path(name) + ending)
        shutil.copy(self.prepare(), self.path(name))
        return self.path(name)

    def finish(self, what):
        shutil.rmtree(self.folder, ignore_errors=True)
        print(f"{what}: {self.tried} runs of tavcc, {len(self.problems)} problems"
              f"{'' if self.all else ' (a part; --all tries everything)'}")
        raise SystemExit(1 if self.problems else 0)


def contents(path):
    """All rows of all tables, the times of audits left out; read past tavcc."""
    database = sqlite3.connect(path)
    tables = [row[0] for row in database.execute(
        "select name from sqlite_master where type='table' and name not like 'sqlite_stat%'"
        " order by name")]
    rows = {}
    for table in tables:
        cursor = database.execute(f'select * from "{table}"')
        kept = [i for i, column in enumerate(cursor.description)
                if not column[0].endswith("CheckDate")]
        rows[table] = sorted(repr([row[i] for i in kept]) for row in cursor)
    database.close()
    return rows


def batch_argument(path, identity):
    """A bill of the sample company, as a host sends it to the batch audit."""
    database = sqlite3.connect(path)
    row = database.execute("select FID, FClassTypeID, FBillTypeID, FBillNo, FCustID+FSupplyID"
                           " from T_CC_StockBill where FID=?", [identity]).fetchone()
    database.close()
    return json.dumps([{"ClassTypeID": row[1], "BillInterID": row[0], "BillType": row[2],
                        "BillTypeID": row[2], "HeadTableName": "T_CC_StockBill", "BillNo": row[3],
                        "CustOrSupplyID": row[4], "AllAmount": 0, "FNeutralizeAmount": 0}])
