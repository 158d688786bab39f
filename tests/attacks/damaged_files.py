#!/usr/bin/env python3
"""Damaged files: cut off, overwritten, with catalogs and cells that nobody stored so.

tavcc answers, or says in one line what is wrong; it does not fall over, and what it says of damage
is a failure and no refusal. usage: damaged_files.py TAVCC [--all] [--seed N]
"""

import os
import random
import re
import sqlite3

import attack

COMMANDS = (
    ("check",),
    ("sql", "select * from T_CC_StockBill"),
    ("call", "cls_CX.AuditBill", "lngFID=121", "lngUserID=7"),
)
CELLS = ("null", "'x'", "x'00ff80'", "-1", "9223372036854775807", "1e308", "''", "'\u4e00'",
         "cast(x'ff' as text)", "zeroblob(70000)")
# One line; a batch's error has the server's form, with the statement.
FORM = re.compile(r"tavcc: [^\n]*\n")
BATCH_FORM = re.compile(r"Msg \d+, Level \d+, State 1, Line 1\n[^\n]*\n"
                        r"  line 1: [^\n]*\n *\^\n")
# Over these tavcc fell once: a session dropped a temporary table beside a damaged catalog.
ONCE_FATAL = {"overwrite": (19, 129)}


class DamagedFiles(attack.Attack):
    def look(self, where):
        for command in COMMANDS:
            answer = self.run(*command, "--db", self.path("erp.db"), "--busy-timeout", 0)
            said = answer.stderr.decode("utf-8", "replace")
            if answer.returncode == attack.FAILED and said:
                self.damage += "damaged" in said
                well_said = FORM.fullmatch(said) or (
                    command[0] == "sql" and BATCH_FORM.fullmatch(said))
                self.expect(well_said, f"{where}, {command}: {said}")
            self.expect(answer.returncode in (attack.PASSED, attack.REFUSED, attack.FAILED),
                        f"{where}, {command}: exit status {answer.returncode}: {said}")
            if answer.returncode == attack.REFUSED and command[0] == "call":
                self.expect(b"failure" not in answer.stdout, f"{where}: refused over a failure")

    def overwrite(self, chance):
        path = self.fresh()
        size = os.path.getsize(path)
        with open(path, "r+b") as file:
            for _ in range(chance.choice((1, 4, 64))):
                at = chance.randrange(size)
                file.seek(at)
                file.write(chance.randbytes(chance.choice((1, 16, 4096)))[:size - at])

    def cut(self, chance):
        path = self.fresh()
        os.truncate(path, chance.randrange(os.path.getsize(path)))

    def cell(self, chance):
        path = self.fresh()
        database = sqlite3.connect(path)
        # Another program's changes; what the file's own collations would refuse is passed over.
        try:
            tables = [row[0] for row in database.execute(
                "select name from sqlite_master where type='table'")]
            table = chance.choice(tables)
            columns = [row[1] for row in database.execute(f'pragma table_info("{table}")')]
            column, cell = chance.choice(columns), chance.choice(CELLS)
            self.last = f"{table}.{column} = {cell}"
            database.execute(f'update "{table}" set "{column}"={cell} where rowid in '
                             f'(select rowid from "{table}" limit 3)')
            database.commit()
        except sqlite3.Error:
            pass
        database.close()

    def attack(self, rounds):
        for kind in (self.overwrite, self.cut, self.cell):
            self.damage = 0
            numbers = sorted({*range(rounds), *ONCE_FATAL.get(kind.__name__, ())})
            for number in numbers:
                self.last = ""
                kind(random.Random(f"{self.seed} {kind.__name__} {number}"))
                self.look(f"{kind.__name__} {number} {self.last}")
            print(f"{kind.__name__}: {len(numbers)} files, {self.damage} times called damaged")


if __name__ == "__main__":
    damaged = DamagedFiles(attack.options())
    print(f"seed {damaged.seed}")
    damaged.attack(200 if damaged.all else 8)
    damaged.finish("damaged files")
