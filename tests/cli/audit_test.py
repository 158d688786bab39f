"""tavcc audit and tavcc unaudit: the batch as a host sends it."""

import json
import os
import pty
import sqlite3
import subprocess
import time

import case
from case import FAILED, PASSED, REFUSED, Case, fingerprint, tavcc


class Audit(Case):
    def audit(self, *words):
        return tavcc("audit", "--db", self.db, *words)

    def unaudit(self, *words):
        return tavcc("unaudit", "--db", self.db, *words)

    def status(self, number):
        return self.rows("select FStatus from (select FBillNo, FStatus from T_CC_StockBill"
                         " union all select FBillNo, FStatus from T_CC_ZZCX"
                         " union all select FBillNo, FStatus from t_CG_Order"
                         " union all select FBillNo, FStatus from t_XS_Order) b"
                         f" where FBillNo='{number}'")[0][0]

    def states(self):
        return self.rows("select FBillNo, FStatus from T_CC_StockBill union all select FBillNo,"
                         " FStatus from T_CC_ZZCX order by FBillNo")

    def test_a_bill_is_audited_and_un_audited(self):
        answer = self.audit("ZZ260301")
        self.assertEqual(answer.returncode, PASSED, answer.stderr)
        self.assertEqual(answer.stdout, "编号为：ZZ260301的组装单单据审核成功！\n\n"
                                        "passed: 1, refused: 0\n")
        self.assertEqual(self.status("ZZ260301"), 1)
        answer = self.unaudit("ZZ260301")
        self.assertEqual(answer.returncode, PASSED, answer.stderr)
        self.assertEqual(answer.stdout, "编号为：ZZ260301的组装单单据反审核成功！\n\n"
                                        "passed: 1, refused: 0\n")
        self.assertEqual(self.status("ZZ260301"), 0)

    def test_a_refused_bill_leaves_the_others_passed(self):
        answer = self.audit("XS260305", "ZZ260301")
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        self.assertEqual(answer.stdout,
                         "编号为：XS260305的销售单单据审核失败！失败原因：审核出现负库存商品！\n"
                         "编号为：ZZ260301的组装单单据审核成功！\n\n"
                         "passed: 1, refused: 1\n")
        self.assertEqual((self.status("XS260305"), self.status("ZZ260301")), (0, 1))

    def test_all_of_them(self):
        """As the demo tells it: of the sample company's 32 open bills 22 pass."""
        before = self.states()
        answer = self.audit("--all")
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        self.assertTrue(answer.stdout.endswith("\npassed: 22, refused: 10\n"), answer.stdout)
        self.assertEqual(answer.stdout.count("编号为："), 32)
        checked = tavcc("check", "--db", self.db)
        self.assertEqual(checked.returncode, PASSED, checked.stdout)
        audited = [bill["bill"] for bill in json.loads(
            self.unaudit("--all", "--dry-run", "--json").stdout)["bills"]]
        self.assertGreaterEqual(len(audited), 22)
        self.assertNotEqual(before, self.states())

    def test_one_class_of_them(self):
        answer = self.audit("--all", "--class", "1040005", "--json")
        report = json.loads(answer.stdout)
        self.assertEqual([(bill["bill"], bill["class"]) for bill in report["bills"]],
                         [("ZZ260301", 1040005)])

    def test_a_dry_run_keeps_nothing(self):
        before = fingerprint(self.db)
        answer = self.audit("--all", "--dry-run")
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        self.assertTrue(answer.stdout.endswith("passed: 22, refused: 10\nNothing was kept.\n"))
        self.assertEqual(fingerprint(self.db), before)
        answer = self.audit("--all", "--dry-run", "--each")
        self.assertTrue(answer.stdout.endswith("\nNothing was kept.\n"), answer.stdout)
        self.assertEqual(fingerprint(self.db), before)

    def test_each_bill_in_a_transaction_of_its_own(self):
        answer = self.audit("--all", "--each")
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        self.assertTrue(answer.stdout.endswith("\npassed: 22, refused: 10\n"), answer.stdout)

    def break_assemblies(self):
        """Bills of two classes then fail; the others do not look at the table."""
        self.change("drop table T_CC_ZZCX_Entry2")

    def test_a_failed_bill_undoes_the_batch(self):
        self.break_assemblies()
        before = self.states()
        answer = self.audit("CG260302", "ZZ260301")
        self.assertEqual(answer.returncode, FAILED, answer.stdout)
        self.assertIn("编号为：CG260302的购货单单据审核成功！ (undone)\n", answer.stdout)
        self.assertIn("failed: 2\nWhat the batch did was undone.\n", answer.stdout)
        self.assertRegex(answer.stdout, r"\n  failure +error 208: .*T_CC_ZZCX_Entry2")
        self.assertRegex(answer.stdout, r"\n  from +src/\w+/\w+\.cpp:\d+\n")
        self.assertEqual(self.states(), before)

    def test_a_failed_bill_undoes_itself_alone_with_each(self):
        self.break_assemblies()
        answer = self.audit("ZZ260301", "CG260302", "--each")
        self.assertEqual(answer.returncode, FAILED, answer.stdout)
        self.assertIn("passed: 1, refused: 0, failed: 1\n", answer.stdout)
        self.assertEqual((self.status("ZZ260301"), self.status("CG260302")), (0, 1))

    def test_as_json(self):
        answer = self.audit("XS260305", "CG260302", "--json", "--dry-run")
        report = json.loads(answer.stdout)
        self.assertEqual((report["verdict"], report["passed"], report["refused"],
                          report["failed"], report["kept"]), ("refused", 1, 1, 0, False))
        refused, passed = report["bills"]
        self.assertEqual(refused, {
            "bill": "XS260305", "class": 1030002, "id": 134, "verdict": "refused",
            "message": "编号为：XS260305的销售单单据审核失败！失败原因：审核出现负库存商品！",
            "refusal": "stock.negative"})
        self.assertEqual(passed["verdict"], "passed")
        self.assertNotIn("refusal", passed)

    def test_a_trace_of_it(self):
        answer = self.audit("ZZ260301", "--json", "--trace", "--dry-run")
        statements = json.loads(answer.stdout)["statements"]
        self.assertIn("delete from #TavTempBill", [s.get("sql") for s in statements])
        answer = self.audit("ZZ260301", "--trace", "--dry-run")
        self.assertIn("> delete from #TavTempBill\n", answer.stderr)

    def test_the_user_counts(self):
        self.change("update t_SystemProfile set FValue='0' where FCategory='General' and"
                    " FKey='SingleMan'")
        maker = self.rows("select FBillerID from T_CC_StockBill where FBillNo='CG260302'")[0][0]
        answer = self.audit("CG260302", "--user", maker)
        self.assertEqual(answer.returncode, REFUSED, answer.stdout + answer.stderr)
        self.assertIn("审核人与制单人不能为同一人！", answer.stdout)

    def test_a_right_that_the_user_lacks(self):
        answer = self.audit("CG260302", "ZZ260301", "--deny", 1020002, "--json")
        report = json.loads(answer.stdout)
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        self.assertEqual([bill.get("refusal") for bill in report["bills"]],
                         ["user.no_right", None])
        self.assertIn("您没有该单据对应基础资料的权限", report["bills"][0]["message"])
        answer = self.audit("CG260302", "ZZ260301", "--deny", 1020002, "--deny", 1040005)
        self.assertIn("passed: 0, refused: 2\n", answer.stdout)
        for words, text in ((["--deny", 5], "--deny 5: no bill has this class type"),
                            (["--deny", "all"], "--deny"),
                            (["--publish", "IndustryType"], "give NAME=VALUE"),
                            (["--publish", "=1"], "give NAME=VALUE")):
            with self.subTest(words):
                self.assert_error(self.audit("CG260302", *words), text)

    def test_bills_that_are_none(self):
        for words, text in ((["NONE"], 'no bill has the number "NONE"'),
                            ([], "which bills? give their numbers, or --all"),
                            (["--all", "ZZ260301"], "which bills?"),
                            (["ZZ260301", "ZZ260301"], "bill ZZ260301 is given twice"),
                            (["ZZ260301", "--class", "1030002"], "no bill has the number"),
                            (["O'Hara"], 'no bill has the number "O\'Hara"')):
            with self.subTest(words):
                self.assert_error(self.audit(*words), text)

    def test_a_number_of_two_bills_is_asked_back(self):
        self.change("update T_CC_ZZCX set FBillNo='CG260302' where FBillNo='ZZ260301'")
        self.assert_error(self.audit("CG260302"), '"CG260302" is the number of 2 bills: ')
        answer = self.audit("CG260302", "--class", "1040005")
        self.assertEqual(answer.returncode, PASSED, answer.stderr)

    def test_nothing_to_do(self):
        self.audit("--all", "--class", "1040005")
        answer = self.audit("--all", "--class", "1040005")
        self.assertEqual((answer.returncode, answer.stdout), (PASSED, "\npassed: 0, refused: 0\n"))

    def test_what_cannot_be_told_is_not_kept(self):
        with open("/dev/full", "w", encoding="utf-8") as full:
            answer = subprocess.run([case.TAVCC, "audit", "--db", self.db, "ZZ260301"],
                                    stdout=full, stderr=subprocess.PIPE, text=True, timeout=60,
                                    check=False)
        self.assertEqual(answer.returncode, FAILED)
        self.assertIn("what the batch did was undone", answer.stderr)
        self.assertEqual(self.status("ZZ260301"), 0)

    def on_terminal(self, *words, locked_for=0.0):
        """What a terminal shows of an audit; another process has locked the file meanwhile."""
        lock = sqlite3.connect(self.db, isolation_level=None)
        lock.execute("begin immediate")
        master, slave = pty.openpty()
        with subprocess.Popen([case.TAVCC, "audit", "--db", self.db, *words], stdout=slave,
                              stderr=slave) as process:
            os.close(slave)
            time.sleep(locked_for)
            lock.execute("rollback")
            lock.close()
            shown = b""
            try:
                while part := os.read(master, 65536):
                    shown += part
            except OSError:  # the other end is closed
                pass
            os.close(master)
            self.assertEqual(process.wait(60), PASSED)
        return shown.decode("utf-8").replace("\r\n", "\n")

    @case.unix_only("Wine's console writes escapes of its own")
    def test_a_terminal_shows_how_far_it_is(self):
        """The bar is told of each bill before it is sent, and gone before its line is printed."""
        bar = "\r\x1b[K[" + "." * 30 + "] 0/2 CG260302"
        gone = "\r\x1b[K"
        shown = self.on_terminal("CG260302", "ZZ260301", "--each", locked_for=1.0)
        self.assertTrue(shown.startswith(bar + gone + "编号为：CG260302的购货单单据审核成功！\n"),
                        repr(shown))
        self.assertTrue(shown.endswith("编号为：ZZ260301的组装单单据审核成功！\n\n"
                                       "passed: 2, refused: 0\n"), repr(shown))
        self.assertEqual(shown.count("] 0/2 CG260302"), 1)

    @case.unix_only("Wine's console writes escapes of its own")
    def test_what_is_done_at_once_shows_no_progress(self):
        shown = self.on_terminal("ZZ260301")
        self.assertEqual(shown, "编号为：ZZ260301的组装单单据审核成功！\n\npassed: 1, refused: 0\n")

    def test_no_progress_without_a_terminal(self):
        self.assertEqual(self.audit("--all", "--dry-run").stderr, "")


if __name__ == "__main__":
    case.main()
