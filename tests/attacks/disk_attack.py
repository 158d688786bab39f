#!/usr/bin/env python3
"""Every operation on the database's files fails once, or the process is killed there.

A call is kept whole or not at all, its exit status tells which, and the next call finds the
database in order. usage: disk_attack.py TAVCC SHIM [--all]
"""

import os
import shutil

import attack

SINGLE, STICKY = 0, 1
WAYS = [("kill", SINGLE), ("tear", SINGLE), ("ENOSPC", SINGLE), ("ENOSPC", STICKY),
        ("EIO", SINGLE), ("EIO", STICKY), ("EROFS", SINGLE), ("EROFS", STICKY)]
UNSURE = b"while the call was being kept"
LEFT = b"; the file that was made of it cannot be removed either\n"


class DiskAttack(attack.Attack):
    def count(self, what, *command):
        counted = self.path("count")
        self.run(*command, shim={"MATCH": "erp.db", "AT": 0, "DO": what, "COUNT": counted})
        with open(counted, encoding="ascii") as file:
            return int(file.read())

    def positions(self, operations, most):
        if self.all or operations <= most:
            return range(1, operations + 1)
        return sorted({1 + i * (operations - 1) // (most - 1) for i in range(most)})

    def sweep(self, name, prepare, command, judge, most):
        before = self.tried
        for what, sticky in WAYS:
            prepare()
            operations = self.count(what, *command)
            for at in self.positions(operations, most):
                prepare()
                answer = self.run(*command, shim={"MATCH": "erp.db", "AT": at, "DO": what,
                                                  "STICKY": sticky})
                judge(f"{name}: {what}{' and all after' if sticky else ''} at operation {at} of "
                      f"{operations}", answer)
        print(f"{name}: {self.tried - before} runs")

    # ---- Calls ----

    def call(self, name, command, most):
        database = self.fresh()
        old = attack.contents(database)
        answer = self.run(*command)
        assert answer.returncode == attack.PASSED, answer.stdout + answer.stderr
        new = attack.contents(database)
        assert old != new

        def judge(where, answer):
            status = answer.returncode
            self.expect(status in (attack.PASSED, attack.FAILED, attack.KILLED),
                        f"{where}: exit status {status}")
            after = self.run("sql", "--db", database, "select count(*) from T_CC_StockBill")
            self.expect(after.returncode == attack.PASSED,
                        f"{where}: not in order afterwards: {after.stderr}")
            now = attack.contents(database)
            self.expect(now in (old, new), f"{where}: half done")
            if status == attack.PASSED:
                self.expect(now == new, f"{where}: passed, and not kept")
            if status == attack.FAILED and UNSURE not in answer.stderr:
                self.expect(now == old, f"{where}: failed, and kept: {answer.stderr}")

        self.sweep(name, self.fresh, command, judge, most)

    def single_call(self):
        self.call("call AuditBill",
                  ("call", "cls_CX.AuditBill", "--db", self.path("erp.db"), "lngFID=121",
                   "lngUserID=7"), 3)

    def batch(self):
        self.call("audit",
                  ("audit", "CG260302", "CG260303", "CT260301", "CU260301", "CG260304", "--db",
                   self.path("erp.db")), 2)

    # ---- Making a file ----

    def init(self):
        whole = attack.contents(self.prepare())
        database = self.path("erp.db")

        def prepare():
            for name in os.listdir(self.folder):
                if name.startswith("erp.db"):
                    os.remove(self.path(name))
            # The journal of a database that is gone.
            shutil.copy(self.path("left-wal"), database + "-wal")

        def judge(where, answer):
            status = answer.returncode
            there = os.path.exists(database)
            stale = os.path.exists(database + "-wal")
            if status == attack.PASSED:
                self.expect(there and not stale, f"{where}: passed, and not made")
            elif status == attack.FAILED:
                # Where nothing can be changed any more, nothing can be taken back.
                left = "and all after" in where and answer.stderr.endswith(LEFT)
                self.expect(there == left, f"{where}: failed, and made: {answer.stderr}")
            else:
                self.expect(status == attack.KILLED, f"{where}: exit status {status}")
            if there and not stale:
                self.expect(attack.contents(database) == whole, f"{where}: half made")
            if there and stale:
                opened = self.run("sql", "--db", database, "select 1")
                self.expect(opened.returncode == attack.FAILED and b"erp.db-wal" in opened.stderr,
                            f"{where}: opened beside another file's journal")

        self.leave_journal()
        self.sweep("init", prepare, ("init", "--db", database, "--sample"), judge, 3)

    def leave_journal(self):
        """A process is killed when its changes are in the journal and not yet in the file."""
        database = self.fresh()
        command = ("call", "cls_CX.AuditBill", "--db", database, "lngFID=121", "lngUserID=7")
        operations = self.count("kill", *command)
        old = attack.contents(self.prepare())
        for at in range(operations, 0, -1):
            self.fresh()
            self.run(*command, shim={"MATCH": "erp.db", "AT": at, "DO": "kill"})
            log = database + "-wal"
            if not os.path.exists(log) or os.path.getsize(log) == 0:
                continue
            for ending, kept in (("", "left"), ("-wal", "left-wal")):
                shutil.copy(database + ending, self.path(kept))
            if attack.contents(database) != old:
                return
        raise AssertionError("no kill left a journal")

    # ---- Recovery ----

    def recovery(self):
        self.leave_journal()
        database = self.path("erp.db")

        def prepare():
            self.fresh()
            shutil.copy(self.path("left"), database)
            shutil.copy(self.path("left-wal"), database + "-wal")

        prepare()
        new = attack.contents(database)

        def judge(where, answer):
            self.expect(answer.returncode in (attack.PASSED, attack.FAILED, attack.KILLED),
                        f"{where}: exit status {answer.returncode}")
            self.expect(attack.contents(database) == new, f"{where}: the journal is lost")

        self.sweep("recovery", prepare, ("sql", "--db", database, "select 1"), judge, 3)

    # ---- A whole story ----

    def demo(self):
        database = self.path("erp.db")

        def prepare():
            for name in os.listdir(self.folder):
                if name.startswith("erp.db"):
                    os.remove(self.path(name))

        def judge(where, answer):
            self.expect(answer.returncode in (attack.PASSED, attack.FAILED, attack.KILLED),
                        f"{where}: exit status {answer.returncode}")
            if not os.path.exists(database):
                return
            checked = self.run("check", "--db", database)
            # The single bills of the story set their state and post nothing.
            lines = checked.stdout.decode().splitlines()
            reasons = [line for line in lines if " is audited, but its lines" in line]
            self.expect(checked.returncode == attack.PASSED or reasons,
                        f"{where}: half done: {checked.stdout} {checked.stderr}")

        self.sweep("demo", prepare, ("demo", "--db", database), judge, 2)


if __name__ == "__main__":
    attack_on_disk = DiskAttack(attack.options())
    attack_on_disk.single_call()
    attack_on_disk.batch()
    attack_on_disk.init()
    attack_on_disk.recovery()
    attack_on_disk.demo()
    attack_on_disk.finish("disk errors and kills")
