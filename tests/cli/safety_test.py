#!/usr/bin/env python3
"""Nothing half done, nothing lost, nothing said that is not so: tavcc when something goes wrong.

usage: safety_test.py TAVCC [unittest options]; case.py has what it shares with the other tests.
"""

import json
import os
import resource
import shutil
import signal
import sqlite3
import subprocess
import unittest

import case
from case import ASSEMBLY_BILL, FAILED, PASSED, REFUSED, Case, fingerprint, tavcc

STATUS = f"select FStatus from T_CC_ZZCX where FID={ASSEMBLY_BILL}"
AUDIT = ("cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7")


def to(file, *arguments):
    """Runs tavcc with its standard output going to the open file; None closes it."""
    close = (lambda: os.close(1)) if file is None else None
    return subprocess.run([case.TAVCC, *arguments], stdout=file, stderr=subprocess.PIPE,
                          preexec_fn=close, text=True, timeout=120)


def closed_pipe():
    reader, writer = os.pipe()
    os.close(reader)
    return writer


class FailedCalls(Case):
    def delete(self, head, entry):
        bill = {"BillInterID": ASSEMBLY_BILL, "HeadTableName": head, "Entry1TableName": entry}
        return self.call("PublicSysInfo.DeleteBill", "oDict=" + json.dumps(bill))

    def test_what_is_half_done_is_undone(self):
        answer = self.delete("T_CC_ZZCX", "T_NoSuchTable")
        self.assertEqual(answer.returncode, FAILED, answer.stdout)
        self.assertIn("PublicSysInfo.DeleteBill failed", answer.stdout)
        self.assertIn("error 208: Invalid object name 'T_NoSuchTable'.", answer.stdout)
        self.assertIn(f"Delete From T_NoSuchTable where FID={ASSEMBLY_BILL}", answer.stdout)
        self.assertIn("What the call did was undone.", answer.stdout)
        self.assertEqual(self.rows(STATUS), [[0]], "the head is there")

    def test_json_tells_what_failed(self):
        bill = {"BillInterID": ASSEMBLY_BILL, "HeadTableName": "T_NoSuchTable"}
        answer = self.call("PublicSysInfo.DeleteBill", "oDict=" + json.dumps(bill), "--json")
        record = json.loads(answer.stdout)
        self.assertEqual((answer.returncode, record["verdict"]), (FAILED, "failed"))
        self.assertRegex(record["failure"].pop("from"), r"^src/balances/bill_deletion\.cpp:\d+$")
        self.assertEqual(record["failure"], {
            "number": 208, "description": "Invalid object name 'T_NoSuchTable'.",
            "at": f"Select FStatus,FVoucherID From T_NoSuchTable  where FID={ASSEMBLY_BILL}"})

    def test_a_setting_that_cannot_be_read_is_a_failure(self):
        self.change("drop table t_SystemProfile")
        answer = self.call("PublicSysInfo.WhetherNeedCheckCredit",
                           'oDict={"ClassTypeID":1030002,"BillType":3001}', "intCheckType=1")
        self.assertEqual(answer.returncode, FAILED, answer.stdout)
        self.assertIn("Invalid object name 't_SystemProfile'.", answer.stdout)

    def test_an_error_that_is_trapped_is_a_failure(self):
        answer = self.call("PublicSysInfo.DeleteBill", 'oDict={"BillInterID":"x"}', "--unchecked")
        self.assertEqual(answer.returncode, FAILED, answer.stdout)
        self.assertIn("error 13: Type mismatch", answer.stdout)

    def test_refused_means_that_nothing_failed(self):
        answer = self.call("cls_CX.UnAuditBill", f"lngFID={ASSEMBLY_BILL}")
        self.assertEqual(answer.returncode, REFUSED)
        self.assertNotIn("failure", answer.stdout)

    def test_a_verification_keeps_nothing(self):
        answer = self.call("PublicSysInfo.VerifyDataBeforeDelete", f"lngFID={ASSEMBLY_BILL}",
                           "HeadTableName=T_CC_ZZCX update T_CC_ZZCX set FStatus=5 select"
                           " FStatus,FVoucherID from T_CC_ZZCX", "--unsafe-names")
        self.assertNotEqual(answer.returncode, FAILED, answer.stdout + answer.stderr)
        self.assertEqual(self.rows(STATUS), [[0]])


class Output(Case):
    def test_a_call_whose_answer_cannot_be_written_is_undone(self):
        with open("/dev/full", "w", encoding="utf-8") as full:
            answer = to(full, "call", "--db", self.db, *AUDIT)
        self.assertEqual((answer.returncode, answer.stderr), (
            FAILED, "tavcc: the output cannot be written: No space left on device; "
                    "what the call did was undone\n"))
        self.assertEqual(self.rows(STATUS), [[0]])
        for stream, word in ((closed_pipe(), "Broken pipe"), (None, "Bad file descriptor")):
            answer = to(stream, "call", "--db", self.db, *AUDIT, "--json")
            self.assertEqual(answer.returncode, FAILED, answer.stderr)
            self.assertIn(word, answer.stderr)
            self.assertEqual(self.rows(STATUS), [[0]])

    def test_each_command_notices(self):
        with open("/dev/full", "w", encoding="utf-8") as full:
            for arguments, word in (
                    (["sql", "--db", self.db, "select 1 as A"], "what it did before is kept"),
                    (["check", "--db", self.db], "No space left"),
                    (["init", "--db", self.path("new.db")], "new.db was made"),
                    (["classes"], "No space left"), (["demo"], "No space left"),
                    (["--help"], "No space left")):
                answer = to(full, *arguments)
                self.assertEqual(answer.returncode, FAILED, arguments)
                self.assertIn(word, answer.stderr)

    def test_a_trace_that_nobody_reads_changes_nothing(self):
        answer = subprocess.run([case.TAVCC, "call", "--db", self.db, "--trace", *AUDIT],
                                stdout=subprocess.PIPE, stderr=closed_pipe(), timeout=120)
        self.assertEqual(answer.returncode, PASSED, answer.stdout)
        self.assertEqual(self.rows(STATUS), [[1]])

    def test_text_that_is_no_utf8(self):
        for arguments, name in (
                (["call", "cls_CX.AuditBill", b"lngFID=1", b"lngUserID=1", b"strReturnMsg=\xff"],
                 "argument strReturnMsg: is not UTF-8"),
                (["sql", b"select '\xff'"], "the batch is not UTF-8")):
            answer = tavcc_bytes(*arguments, "--db", self.db)
            self.assertEqual((answer.returncode, answer.stderr.decode()),
                             (FAILED, f"tavcc: {name}\n"))
        # As another program may have stored it.
        database = sqlite3.connect(self.db)
        database.execute("update t_Stock set FName=cast(x'e4b8ff41' as text)")
        database.commit()
        database.close()
        for form in ([], ["--json"]):
            answer = tavcc_bytes("sql", "--db", self.db, "select FName from t_Stock", *form)
            self.assertIn("\N{REPLACEMENT CHARACTER}A", answer.stdout.decode())


def tavcc_bytes(*arguments):
    return subprocess.run([case.TAVCC, *arguments], capture_output=True, timeout=120)


def size_of(path):
    """0 where there is none: another process makes and removes it."""
    try:
        return os.path.getsize(path)
    except FileNotFoundError:
        return 0


class MakingFiles(Case):
    def test_names_that_are_no_files(self):
        for name in (":memory:", "file:x", "file::memory:?cache=shared"):
            for command in (["init"], ["demo"], ["sql", "select 1"], ["check"]):
                self.assert_error(tavcc(*command, "--db", name), "must be the name of a file")

    def test_a_link_to_nothing(self):
        os.symlink("nowhere", self.path("link.db"))
        self.assert_error(tavcc("init", "--db", self.path("link.db")),
                          "link.db: is a link to a file that does not exist")
        self.assertTrue(os.path.islink(self.path("link.db")))

    def test_files_of_the_user_are_left_alone(self):
        notes = self.write("new.db.unfinished", "notes")
        self.assertEqual(tavcc("init", "--db", self.path("new.db")).returncode, PASSED)
        self.assertTrue(os.path.exists(notes))
        self.assertEqual([name for name in os.listdir(self.folder.name)
                          if name.startswith("new.db.new-")], [])

    def test_one_of_four_wins(self):
        file = self.path("raced.db")
        makers = [subprocess.Popen([case.TAVCC, "init", "--db", file, "--sample"],
                                   stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
                  for _ in range(4)]
        said = [maker.communicate(timeout=300)[1] for maker in makers]
        self.assertEqual(sorted(maker.returncode for maker in makers), [0, 2, 2, 2], said)
        for maker, text in zip(makers, said):
            if maker.returncode == FAILED:
                self.assertIn("raced.db: exists already; it is left as it is", text)
        self.db = file
        self.assertEqual(tavcc("check", "--db", file).returncode, PASSED)

    def test_room_for_the_file_is_enough(self):
        size = os.path.getsize(self.pristine)

        def limit():
            signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
            resource.setrlimit(resource.RLIMIT_FSIZE, (size, size))
        file = self.path("tight.db")
        answer = subprocess.run([case.TAVCC, "init", "--db", file, "--sample"],
                                capture_output=True, preexec_fn=limit, timeout=120)
        self.assertEqual(answer.returncode, PASSED, answer.stderr)

    def test_a_stale_journal_is_not_played(self):
        left = self.killed_in_a_transaction()
        shutil.copy(left, self.path("again.db-wal"))
        again = self.path("again.db")
        self.assertEqual(tavcc("init", "--db", again).returncode, PASSED)
        self.assertEqual(os.listdir(self.folder.name).count("again.db-wal"), 0)
        self.db = again
        self.assertEqual(self.rows("select count(*) from T_CC_ZZCX"), [[0]])
        # Beside a database that was copied into its place.
        shutil.copy(self.pristine, self.path("copied.db"))
        shutil.copy(left, self.path("copied.db-wal"))
        # The copy is the same database, so its own journal belongs to it.
        self.db = self.path("copied.db")
        self.assertEqual(self.rows("select FName from t_Stock where FItemID=-1"), [["killed"]])
        stranger = self.path("stranger.db")
        self.assertEqual(tavcc("init", "--db", stranger, "--sample").returncode, PASSED)
        shutil.copy(left, stranger + "-wal")
        self.assert_error(tavcc("sql", "--db", stranger, "select 1"),
                          "stranger.db-wal, the journal of another file")

    def killed_in_a_transaction(self):
        """A journal with a committed change that the file does not have."""
        batch = ("insert into t_Stock(FItemID,FName) values(-1,'killed') declare @i int set @i=0"
                 " while @i<100000000 set @i=@i+1")
        process = subprocess.Popen([case.TAVCC, "sql", "--db", self.db, batch],
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        journal = self.db + "-wal"
        while process.poll() is None and size_of(journal) <= 4096:
            pass
        process.kill()
        process.communicate()
        shutil.copy(journal, self.path("left-wal"))
        return self.path("left-wal")


class Locks(Case):
    def lock(self):
        """Another process in the middle of a transaction."""
        holder = sqlite3.connect(self.db, isolation_level=None)
        holder.execute("begin immediate")
        self.addCleanup(holder.close)
        return holder

    def test_who_waits_says_for_what(self):
        holder = self.lock()
        answer = self.call(*AUDIT, "--busy-timeout", "0")
        self.assert_error(answer, f"error 1222: Lock request time out period exceeded. {self.db} "
                                  "has been locked by another process for 0 seconds.")
        holder.execute("rollback")
        self.assertEqual(self.call(*AUDIT, "--busy-timeout", "0").returncode, PASSED)

    def test_reading_waits_for_nobody(self):
        holder = self.lock()
        for arguments in (["sql", "select count(*) from T_CC_ZZCX"], ["check"],
                          ["call", "PublicSysInfo.GetPeriodStartAndEndDate"],
                          ["call", "cls_CX.VerifyDataBeforeAudit", f"lngFID={ASSEMBLY_BILL}"],
                          ["call", "PublicSysInfo.CheckItemStockNum", "intCheckType=1",
                           'oDict={"ClassTypeID":1030002,"BillInterID":101,"BillType":3001}']):
            answer = tavcc(*arguments, "--db", self.db, "--busy-timeout", "0")
            self.assertNotEqual(answer.returncode, FAILED, answer.stdout + answer.stderr)
        holder.execute("rollback")

    def test_a_name_of_another_database_is_not_used(self):
        answer = self.call(*AUDIT, "sDsn=elsewhere.db", "--busy-timeout", "0")
        self.assertEqual((answer.returncode, answer.stderr), (
            PASSED, f"tavcc: note: sDsn is not used: the call works on {self.db}\n"))
        self.assertEqual(self.rows(STATUS), [[1]])
        self.assertFalse(os.path.exists("elsewhere.db"))


class Arguments(Case):
    def test_names_of_tables_are_names(self):
        for name in ("T_CC_ZZCX;delete t_Stock", "T_CC_ZZCX--", "T_CC_ZZCX/*", "a'b", 'a"b',
                     "T_CC_ZZCX delete t_Stock"):
            before = fingerprint(self.db)
            self.assert_error(self.call("PublicSysInfo.VerifyDataBeforeDelete", "lngFID=1",
                                        "HeadTableName=" + name), "--unsafe-names")
            bill = json.dumps({"BillInterID": 1, "Entry2TableName": name})
            self.assert_error(self.call("PublicSysInfo.DeleteBill", "oDict=" + bill),
                              "argument oDict.Entry2TableName")
            self.assertEqual(fingerprint(self.db), before)

    def test_nested_json_is_refused_with_its_place(self):
        deep = "[" * 100_000
        self.assert_error(tavcc("call", "PublicSysInfo.AuditBill", "--args", "-", "--db", self.db,
                                stdin='{"billVect":' + deep),
                          "standard input: nested more than 200 levels deep at line 1, column 212")
        self.assert_error(self.call("PublicSysInfo.AuditBill", "billVect=" + deep),
                          "argument billVect: nested more than 200 levels deep at line 1")
        answer = tavcc("run", self.write("deep.json", deep))
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn("deep.json: nested more than 200 levels deep", answer.stderr)

    def test_bad_numbers_and_bytes_name_file_and_argument(self):
        with open(self.path("bytes.json"), "wb") as file:
            file.write(b'{"strReturnMsg": "\xff"}')
        self.assert_error(self.call("cls_CX.AuditBill", "--args", self.path("bytes.json")),
                          "bytes.json: no JSON at line 1, column 19: the text is not UTF-8")
        self.assert_error(self.call("PublicSysInfo.AuditBill", "billVect=[1e999]"),
                          "argument billVect: no JSON at line 1, column 6: the number is out of "
                          "range")


class Checks(Case):
    def test_names_the_bill_that_is_not_in_the_stock(self):
        self.assertEqual(self.call(*AUDIT).returncode, PASSED)
        answer = tavcc("check", "--db", self.db)
        self.assertEqual(answer.returncode, REFUSED)
        self.assertEqual(answer.stdout.splitlines()[-1],
                         "ZZ260301 is audited, but its lines are not in the stock")
        record = json.loads(tavcc("check", "--db", self.db, "--json").stdout)
        self.assertEqual(record["causes"], [
            {"bill": "ZZ260301", "class": 1040005, "id": ASSEMBLY_BILL, "audited": True}])
        self.assertEqual(self.call("cls_CX.UnAuditBill",
                                   f"lngFID={ASSEMBLY_BILL}").returncode, PASSED)
        self.assertEqual(tavcc("check", "--db", self.db).returncode, PASSED)

    def test_names_the_bill_that_is_in_the_stock_alone(self):
        bill = self.rows("select FClassTypeID, FBillTypeID, FBillNo from T_CC_ZZCX where FID=121")
        bills = json.dumps([{"ClassTypeID": bill[0][0], "BillInterID": ASSEMBLY_BILL,
                             "BillType": bill[0][1], "HeadTableName": "T_CC_ZZCX",
                             "BillNo": bill[0][2]}])
        answer = self.call("PublicSysInfo.AuditBill", "billVect=" + bills, "CheckType=1",
                           "BatchCheck=true")
        self.assertEqual(answer.returncode, PASSED, answer.stdout)
        self.assertEqual(tavcc("check", "--db", self.db).returncode, PASSED)
        self.change(f"update T_CC_ZZCX set FStatus=0 where FID={ASSEMBLY_BILL}")
        answer = tavcc("check", "--db", self.db)
        self.assertEqual(answer.stdout.splitlines()[-1],
                         "ZZ260301 is not audited, but its lines are in the stock")

    def test_names_nobody_for_what_no_bill_did(self):
        self.change("update T_CC_Inventory set FQty=FQty+0.5 where FItemID=1007")
        self.assertEqual(json.loads(tavcc("check", "--db", self.db, "--json").stdout)["causes"],
                         [])


class DamagedContents(Case):
    """Cells that another program wrote: tavcc never takes them for what they are not."""

    COLUMNS = {"b": "bit", "t": "tinyint", "s": "smallint", "i": "int", "l": "bigint",
               "d": "decimal(18,4)", "m": "money", "f": "float", "at": "datetime", "w": "nvarchar(20)",
               "v": "varbinary(9)"}
    WRONG = (
        ("b", "2", "b holds a number that no bit can be"),
        ("b", "'yes'", "b holds text that no bit can be"),
        ("t", "256", "t holds a number that no tinyint can be"),
        ("t", "-1", "t holds a number that no tinyint can be"),
        ("s", "32768", "s holds a number that no smallint can be"),
        ("i", "2147483648", "i holds a number that no int can be"),
        ("i", "1.5", "i holds a number that no int can be"),
        ("i", "'x'", "i holds text that no int can be"),
        ("l", "x'00ff'", "l holds bytes that no bigint can be"),
        ("d", "'1.5'||'x'", "d holds text that no decimal(18,4) can be"),
        ("d", "1e308", "d holds a number that no decimal(18,4) can be"),
        ("d", "x'00'", "d holds bytes that no decimal(18,4) can be"),
        ("m", "''", "m holds text that no money can be"),
        ("f", "'x'", "f holds text that no float can be"),
        ("at", "'2026-03-01'", "at holds text that no datetime can be"),
        ("at", "9223372036854775807", "at holds a number that no datetime can be"),
        ("w", "x'00'", "w holds bytes that no nvarchar(20) can be"),
        ("v", "'x'", "v holds text that no varbinary(9) can be"),
    )

    def setUp(self):
        super().setUp()
        columns = ",".join(f"[{name}] {kind}" for name, kind in self.COLUMNS.items())
        self.change(f"create table Cells({columns}) insert Cells values"
                    "(1,255,-32768,2147483647,9000000000,1.5,2.25,0.5,'2026-03-01',N'\u4e00',0x00ff)")

    def damage(self, column, cell):
        store = sqlite3.connect(self.db)
        name, = store.execute("select name from sqlite_master where type='table' and sql like "
                              "'%\"at\"%'").fetchone()
        store.execute(f'update "{name}" set "{column}"={cell}')
        store.commit()
        store.close()

    def test_what_is_read_is_what_the_type_has(self):
        readable = [name for name in self.COLUMNS if name != "v"]
        select = f"select {','.join(readable)} from Cells"
        self.assertEqual(len(self.rows(select)), 1)
        for column, cell, said in self.WRONG:
            with self.subTest(column=column, cell=cell):
                self.setUp()
                self.damage(column, cell)
                answer = tavcc("sql", "--db", self.db, f"select [{column}] from Cells")
                self.assertEqual(answer.returncode, FAILED)
                self.assertIn(f"{self.db}: the file is damaged: {said}", answer.stderr)

    def test_what_is_reckoned_with_too(self):
        self.damage("d", "'much'")
        for batch in ("select d*2 from Cells", "select sum(d) from Cells",
                      "declare @d decimal(18,4) select @d=d+1 from Cells"):
            with self.subTest(batch):
                answer = tavcc("sql", "--db", self.db, batch)
                self.assertEqual(answer.returncode, FAILED)
                self.assertIn("the file is damaged: a number is stored as something", answer.stderr)

    def test_a_call_over_damage_is_no_refusal(self):
        store = sqlite3.connect(self.db)
        store.execute(f"update T_CC_ZZCX set FStatus='none' where FID={ASSEMBLY_BILL}")
        store.commit()
        store.close()
        answer = self.call(*AUDIT)
        self.assertEqual(answer.returncode, FAILED, answer.stdout + answer.stderr)
        self.assertIn("the file is damaged: ", answer.stdout + answer.stderr)


if __name__ == "__main__":
    case.main()
