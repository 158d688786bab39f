#!/usr/bin/env python3
"""Many processes audit and un-audit the same and other bills of one file at the same time.

None is starved, the ledger holds afterwards, and each bill is in a state that somebody was told.
usage: many_processes.py TAVCC [--all] [--seed N]
"""

import json
import random
import subprocess
import threading

import attack

BILLS = [104, 105, 106, 107, 108]  # of the sample company, not audited


class ManyProcesses(attack.Attack):
    def audit(self, database, bill, direction):
        answer = self.run("call", "PublicSysInfo.AuditBill", "--db", database, "--json",
                          "billVect=" + self.arguments[bill], f"CheckType={direction}", "BatchCheck=true",
                          "--busy-timeout", 600)
        if answer.returncode not in (attack.PASSED, attack.REFUSED):
            self.problem(f"bill {bill}, direction {direction}: {answer.stdout} {answer.stderr}")
            return False
        return json.loads(answer.stdout)["arguments"]["dct"]["SuccessCount"] == 1

    def work(self, database, worker, calls, passed):
        random_of_worker = random.Random(f"{self.seed} {worker}")
        for _ in range(calls):
            bill = random_of_worker.choice(BILLS)
            direction = random_of_worker.choice((1, -1))
            passed[worker] += self.audit(database, bill, direction)

    def race(self, processes, calls):
        database = self.fresh()
        self.arguments = {bill: attack.batch_argument(database, bill) for bill in BILLS}
        passed = [0] * processes
        threads = [threading.Thread(target=self.work, args=(database, worker, calls, passed))
                   for worker in range(processes)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        checked = self.run("check", "--db", database)
        self.expect(checked.returncode == attack.PASSED,
                    f"{processes} processes: the ledger does not hold: {checked.stdout.decode()}")
        self.expect(sum(passed) > 0, f"{processes} processes: no call passed")
        print(f"{processes} processes, {calls} calls each: {sum(passed)} audits and un-audits "
              "passed, the ledger holds")


if __name__ == "__main__":
    many = ManyProcesses(attack.options())
    print(f"seed {many.seed}")
    many.race(8, 20 if many.all else 2)
    many.race(24, 20 if many.all else 1)
    many.finish("many processes")
