#!/usr/bin/env python3
"""tavcc explain: why a bill is refused, gate by gate, and what an audit would change.

usage: explain_test.py TAVCC SERVED_DATABASE [unittest options]
"""

import json
import os
import re
import resource
import shutil
import subprocess
import tempfile

import case
from case import FAILED, PASSED, REFUSED, Case, fingerprint, tavcc

# The sample company's bills that are to be refused: the gate, the refusal's name, its message, and
# what the rows say about it.
TEN_REFUSED = {
    "XS260303": ("rejected", "bill.rejected", "该单据为驳回状态!", {"rejected": "1"}),
    "XD260302": ("rejected", "bill.rejected", "该单据为驳回状态!", {"rejected": "1"}),
    "XS260304": ("serial numbers", "serial.missing", "该单据存在未设置SN号的商品!",
                 {"line": "1", "item": "02.002 电助力车"}),
    "XS260305": ("negative stock", "stock.negative", "审核出现负库存商品！",
                 {"line": "1", "item": "01.005 内胎", "stock": "主仓库", "in stock": "200",
                  "wanted": "999", "short by": "799"}),
    "XS260306": ("negative stock", "stock.negative_batch",
                 "分批认定法计价的商品,不允许负库存出库！",
                 {"line": "1", "item": "01.004 进口钛合金管", "stock": "主仓库",
                  "batch": "TC4-001", "in stock": "25.5", "wanted": "100", "short by": "74.5"}),
    "CG260201": ("period", "period.closed", "不能审核以前期间的单据！",
                 {"the bill's date": "2026-02-20", "the period's first day": "2026-03-01"}),
    "CG260305": ("maker", "user.own_bill", "审核人与制单人不能为同一人！",
                 {"maker": "16394", "user": "16394"}),
    "XS260307": ("credit", "credit.exceeded",
                 "当前客户的信用额度为：20000，截止到本次往来余额已经超出。",
                 {"customer": "城东车行", "credit line": "20000", "balance": "18500",
                  "this bill": "2550", "over by": "1050"}),
    "XS260308": ("limit prices", "price.below_limit", "出现销售价格低于限价的商品",
                 {"line": "1", "item": "03.001 头盔", "price": "50", "limit": "90"}),
    "QR260302": ("zero prices", "price.zero", "第2行商品单价为零,审核不成功！",
                 {"line": "2", "item": "01.005 内胎", "price": "0"}),
}

# The file that each of these gates' refusals stands in.
RULES = {
    "rejected": "src/audit/batch_audit.cpp",
    "serial numbers": "src/audit/batch_audit.cpp",
    "negative stock": "src/audit/batch_audit.cpp",
    "period": "src/checks/verification.cpp",
    "maker": "src/checks/verification.cpp",
    "zero prices": "src/checks/verification.cpp",
    "credit": "src/checks/credit.cpp",
    "limit prices": "src/pricing/limit_price.cpp",
}

OPEN_BILLS = """
SELECT FBillNo FROM (
  SELECT FID, FBillNo FROM T_CC_StockBill WHERE FStatus = 0 AND FBillTypeID <> 2032
  UNION ALL SELECT FID, FBillNo FROM T_CC_ZZCX WHERE FStatus = 0
  UNION ALL SELECT FID, FBillNo FROM t_CG_Order WHERE FStatus = 0
  UNION ALL SELECT FID, FBillNo FROM t_XS_Order WHERE FStatus = 0) b ORDER BY FID"""


class ExplainCase(Case):
    def explain(self, *words):
        """The explanations of the bills, with the exit status; the file stays as it is."""
        before = fingerprint(self.db)
        answer = tavcc("explain", "--db", self.db, "--json", *words)
        self.assertEqual(answer.stderr, "")
        self.assertEqual(fingerprint(self.db), before, "the database was touched")
        return json.loads(answer.stdout), answer.returncode

    def explain_one(self, *words):
        explanations, status = self.explain(*words)
        self.assertEqual(len(explanations), 1)
        return explanations[0], status

    @staticmethod
    def stopped(gates):
        return [gate for gate in gates if gate["answer"] in ("refused", "failed")]

    @staticmethod
    def gate(explanation, name):
        found = [gate for gate in explanation["gates"] if gate["gate"] == name]
        assert len(found) == 1, f"{len(found)} gates {name}"
        return found[0]

    @staticmethod
    def settings(gate):
        return {f"{s['category']}/{s['key']}": s["value"] for s in gate["settings"]}


class Refusals(ExplainCase):
    def test_each_refused_bill_of_the_sample_company(self):
        self.assertEqual(len(TEN_REFUSED), 10)
        for number, (gate, name, message, reason) in TEN_REFUSED.items():
            with self.subTest(number):
                explanation, status = self.explain_one(number)
                self.assertEqual(status, REFUSED)
                self.assertEqual(explanation["verdict"], "refused")
                self.assertEqual(explanation["audit"]["verdict"], "refused")
                self.assertEqual(explanation["audit"]["changes"], [])
                self.assertTrue(explanation["audit"]["line"].endswith("审核失败！失败原因：" + message))
                first = self.stopped(explanation["gates"])[0]
                self.assertEqual(first["gate"], gate)
                self.assertEqual(first["message"], message)
                self.assertEqual(first["refusal"]["name"], name)
                self.assertEqual(first["reasons"], [reason])
                self.assertEqual(first["rule"].split(":")[0], RULES[gate])
                self.assertGreater(int(first["rule"].split(":")[1]), 0)
                self.assertTrue(first["statement"]["sql"])
                self.assertTrue(first["answer_rows"]["rows"])

    def test_the_ladder_and_the_audit_agree_on_every_open_bill(self):
        numbers = [row[0] for row in self.rows(OPEN_BILLS)]
        self.assertEqual(len(numbers), 32)
        explanations, _ = self.explain(*numbers)
        refused = []
        for explanation in explanations:
            number = explanation["bill"]["number"]
            with self.subTest(number):
                stopped = self.stopped(explanation["gates"])
                self.assertEqual(explanation["audit"]["verdict"],
                                 "refused" if stopped else "passed")
                if stopped:
                    refused.append(number)
                    self.assertTrue(explanation["audit"]["line"].endswith(stopped[0]["message"]))
                else:
                    self.assertTrue(explanation["audit"]["line"].endswith("审核成功！"))
                    self.assertTrue(explanation["audit"]["changes"])
        self.assertEqual(sorted(refused), sorted(TEN_REFUSED))

    def test_it_goes_on_behind_the_first_refusal(self):
        self.change("UPDATE T_CC_StockBill SET FBillerID=16394, FRejected=1, FDate='20260210'"
                    " WHERE FBillNo='XS260305'")
        explanation, status = self.explain_one("XS260305")
        self.assertEqual(status, REFUSED)
        self.assertEqual([gate["gate"] for gate in self.stopped(explanation["gates"])],
                         ["maker", "period", "negative stock", "rejected"])
        # The audit stops at the first.
        self.assertTrue(explanation["audit"]["line"].endswith("审核人与制单人不能为同一人！"))

    def test_the_gates_of_a_purchase_stand_in_the_order_of_the_audit(self):
        explanation, _ = self.explain_one("CG260302")
        self.assertEqual(
            [(gate["gate"], gate["method"].split(".")[1]) for gate in explanation["gates"]],
            [("right", "AuditBill"), ("auditor", "AuditBill"),
             *[(name, "VerifyDataBeforeAudit") for name in (
                 "exists", "state", "voucher", "maker", "zero prices", "period",
                 "downstream bills", "downstream payments", "day-end bill")],
             *[("related: " + name, "CanCheckGH") for name in (
                 "state", "voucher", "maker", "period", "downstream bills",
                 "voucher of the reversal", "payments")],
             *[(name, "AuditBill") for name in (
                 "credit", "limit prices", "negative stock", "rejected", "serial numbers")]])
        answers = {gate["gate"]: gate["answer"] for gate in explanation["gates"]}
        self.assertEqual(answers["auditor"], "not asked")
        self.assertEqual(answers["negative stock"], "not asked")
        self.assertEqual(answers["related: period"], "passed")

    def test_every_line_below_its_limit_price_is_named(self):
        self.change("INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FSCStockID,"
                    " FUnitID, FShowUnitID, FCoefficient, FQty, FShowQty, FPrice)"
                    " VALUES (139, 2, 2, 1009, 2001, 101, 101, 1, 1, 1, 3)")
        explanation, _ = self.explain_one("XS260308")
        self.assertEqual(self.gate(explanation, "limit prices")["reasons"],
                         [{"line": "1", "item": "03.001 头盔", "price": "50", "limit": "90"},
                          {"line": "2", "item": "01.005 内胎", "price": "3", "limit": "10"}])

    def test_what_a_host_asks_beside_the_audit(self):
        explanation, status = self.explain_one("CG260302")
        self.assertEqual(status, REFUSED)
        self.assertEqual(explanation["audit"]["verdict"], "passed")
        overdue = explanation["host_gates"][0]
        self.assertEqual(overdue["answer"], "refused")
        self.assertEqual(overdue["refusal"]["name"], "overdue.payable")
        self.assertEqual(overdue["reasons"],
                         [{"bill": "CG260301", "not cleared": "450", "due": "2026-03-10"}])
        self.assertTrue(overdue["rule"].startswith("src/checks/overdue.cpp:"))
        self.change("UPDATE t_SystemProfile SET FValue='0' WHERE FKey='AlertOverdue'")
        explanation, status = self.explain_one("CG260302")
        self.assertEqual(status, PASSED)
        self.assertEqual(explanation["host_gates"][0]["answer"], "not asked")
        self.assertEqual(self.settings(explanation["host_gates"][0])["IC/AlertOverdue"], "0")

    def test_the_settings_that_a_gate_read(self):
        explanation, _ = self.explain_one("XS260305")
        self.assertEqual(self.settings(self.gate(explanation, "negative stock")),
                         {"IC/UnderStock": "0", "IC/StockQtyIncludeUnCheck": "0"})
        self.assertEqual(self.settings(self.gate(explanation, "maker")), {"General/SingleMan": "0"})
        self.assertEqual(self.settings(self.gate(explanation, "period")),
                         {"IC/CurrentYear": "2026", "IC/CurrentPeriod": "3"})
        self.assertEqual(self.settings(self.gate(explanation, "rejected")), {})
        self.change("DELETE FROM t_SystemProfile WHERE FKey='SingleMan'")
        explanation, _ = self.explain_one("XS260305")
        self.assertEqual(self.settings(self.gate(explanation, "maker")), {"General/SingleMan": None})

    def test_settings_that_a_statement_reads(self):
        explanation, _ = self.explain_one("CG260201")
        self.assertEqual(self.settings(self.gate(explanation, "related: period")),
                         {"IC/CurrentYear": "2026", "IC/CurrentPeriod": "3"})
        self.assertEqual(self.settings(self.gate(explanation, "related: maker")),
                         {"General/SingleMan": "0"})

    def test_the_gates_of_the_bills_own_class(self):
        for number, change, method, gates, name in (
                ("DB260301", "UPDATE T_CC_StockBill SET FVoucherID=9 WHERE FID=123",
                 "cls_DB.VerifyDataBeforeAudit", ["exists", "state", "voucher"], "bill.voucher"),
                ("CX260301", "UPDATE T_CC_ZZCX SET FVoucherID=9 WHERE FID=122",
                 "cls_CX.VerifyDataBeforeAudit", ["exists", "state", "voucher"], "bill.voucher"),
                ("ZZ260301", "UPDATE T_CC_ZZCX SET FVoucherID=9, FBillerID=16394,"
                 " FDate='20260201' WHERE FID=121",
                 "cls_ZZ.VerifyDataBeforeAudit",
                 ["exists", "state", "voucher", "period", "maker"], "bill.voucher"),
        ):
            with self.subTest(number):
                self.change(change)
                explanation, status = self.explain_one(number)
                self.assertEqual(status, REFUSED)
                own = explanation["own_gates"]
                self.assertEqual([gate["gate"] for gate in own], ["head: " + g for g in gates])
                self.assertEqual({gate["method"] for gate in own}, {method})
                refused = self.stopped(own)
                self.assertEqual([gate["gate"] for gate in refused],
                                 ["head: " + gate for gate in gates[2:]])
                self.assertEqual(refused[0]["refusal"]["name"], name)
                self.assertEqual(refused[0]["reasons"], [{"voucher": "9"}])
        explanation, _ = self.explain_one("CD260301")
        self.assertEqual(explanation["own_gates"], [])

    def test_another_user(self):
        explanation, status = self.explain_one("CG260302", "--user", "16390")
        self.assertEqual(status, REFUSED)
        self.assertEqual([gate["gate"] for gate in self.stopped(explanation["gates"])],
                         ["maker", "related: maker"])
        self.assertEqual(self.gate(explanation, "maker")["reasons"],
                         [{"maker": "16390", "user": "16390"}])

    def test_a_right_that_the_user_lacks(self):
        explanation, status = self.explain_one("CG260302", "--deny", "1020002")
        self.assertEqual(status, REFUSED)
        right = self.gate(explanation, "right")
        self.assertEqual((right["answer"], right["refusal"]["name"]), ("refused", "user.no_right"))
        self.assertEqual(right["reasons"], [{"user": "16394"}])
        self.assertEqual([gate["gate"] for gate in self.stopped(explanation["gates"])], ["right"])
        explanation, _ = self.explain_one("CG260302", "--deny", "1030002")
        self.assertEqual(self.gate(explanation, "right")["answer"], "passed")

    def test_a_value_that_the_host_publishes(self):
        explanation, _ = self.explain_one("XS260308")
        general = self.gate(explanation, "limit prices")
        self.assertEqual(self.settings(general)["published/IndustryType"], None)
        explanation, _ = self.explain_one("XS260308", "--publish", "IndustryType=1")
        steel = self.gate(explanation, "limit prices")
        self.assertEqual(self.settings(steel)["published/IndustryType"], "1")
        # Steel has a query of its own.
        self.assertNotEqual(steel["statement"]["sql"], general["statement"]["sql"])


class UnAudit(ExplainCase):
    def un_audit(self):
        return self.explain_one("CG260301", "--un-audit")

    def test_a_bill_that_may_be_un_audited(self):
        explanation, status = self.un_audit()
        self.assertEqual(explanation["direction"], "un-audit")
        self.assertEqual(explanation["audit"]["verdict"], "passed")
        self.assertEqual(status, PASSED)
        self.assertTrue(explanation["audit"]["line"].endswith("反审核成功！"))

    def test_a_bill_that_is_not_audited(self):
        explanation, status = self.explain_one("XS260301", "--un-audit")
        self.assertEqual(status, REFUSED)
        state = self.gate(explanation, "state")
        self.assertEqual(state["message"], "该单据未审核，不能反审核！")
        self.assertEqual(state["refusal"]["name"], "bill.not_audited")

    def test_what_stands_in_the_way(self):
        for change, gate, name, reason in (
                ("UPDATE T_CC_StockBill SET FVoucherID=77 WHERE FID=101",
                 "voucher", "bill.voucher", {"voucher": "77"}),
                ("UPDATE T_CC_StockBill SET FStatus=2 WHERE FID=101",
                 "state", "bill.closed", {"state": "2"}),
                ("UPDATE T_CC_StockBillEntry SET FClassID_SRC=1020002, FID_SRC=101 WHERE FID=106",
                 "downstream bills", "bill.downstream", {"bill": "CT260301"}),
                ("INSERT INTO t_RP_CheckBillEntry1 (FID, FSourceClassTypeID, FSourceBillID)"
                 " VALUES (55, 1020002, 101)",
                 "downstream payments", "bill.downstream", {"receivable or settlement": "55"}),
                ("INSERT INTO t_RP_PBillEntry (FID, FSourceClassTypeID, FSourceBillID)"
                 " VALUES (56, 1020002, 101)",
                 "related: payments", "bill.paid", {"payment, receipt or settlement": "56"}),
                ("UPDATE t_SystemProfile SET FValue='1' WHERE FKey='UnCheckOnlySelf'",
                 "auditor", "user.not_auditor", {"auditor": "16388", "user": "16394"}),
                ("UPDATE T_CC_StockBill SET FDate='20260228' WHERE FID=101",
                 "period", "period.closed",
                 {"the bill's date": "2026-02-28", "the period's first day": "2026-03-01"}),
                ("UPDATE T_CC_Inventory SET FQty=4 WHERE FItemID=1003",
                 "negative stock", "stock.negative",
                 {"line": "1", "item": "01.003 链条", "stock": "主仓库", "in stock": "4",
                  "wanted": "10", "short by": "6"}),
        ):
            with self.subTest(gate):
                self.setUp()
                self.change(change)
                explanation, status = self.un_audit()
                self.assertEqual(status, REFUSED)
                self.assertEqual(explanation["audit"]["verdict"], "refused")
                found = self.gate(explanation, gate)
                self.assertEqual(found["answer"], "refused")
                self.assertEqual(found["refusal"]["name"], name)
                self.assertEqual(found["reasons"], [reason])

    def test_invoices_are_asked_for_by_the_host(self):
        self.change("UPDATE T_CC_StockBill SET FInvoiceAmt=100 WHERE FID=101")
        explanation, status = self.un_audit()
        self.assertEqual(status, REFUSED)
        invoices = explanation["host_gates"][1]
        self.assertEqual(invoices["refusal"]["name"], "bill.invoiced")
        self.assertEqual(invoices["reasons"], [{"invoiced": "100"}])
        self.assertEqual(explanation["audit"]["verdict"], "passed")

    def test_what_it_would_change(self):
        explanation, _ = self.un_audit()
        changes = {table["what"]: table["rows"] for table in explanation["audit"]["changes"]}
        self.assertEqual(changes["Stock on hand"],
                         [{"key": {"item": "01.003", "name": "链条", "stock": "主仓库", "batch": "",
                                   "aux": ""},
                           "before": {"quantity": 60, "value": 2700},
                           "after": {"quantity": 50, "value": 2250}}])
        self.assertEqual(changes["State of the bill"],
                         [{"key": {"bill": "CG260301"},
                           "before": {"state": 1, "auditor": 16388},
                           "after": {"state": 0, "auditor": 0}}])


class Decimals(ExplainCase):
    def test_they_have_all_their_digits_in_json(self):
        """Rows that decided, rows that were seen, and what an audit changes."""
        answer = tavcc("explain", "XS260307", "CG260302", "--db", self.db, "--json").stdout
        self.assertIn("20000.0000000000", answer)
        self.assertIn('"quantity": 40.0000000000', answer)
        self.assertNotIn('"decimal"', answer)


class Changes(ExplainCase):
    def changes(self, number):
        explanation, _ = self.explain_one(number)
        return {table["what"]: table["rows"] for table in explanation["audit"]["changes"]}

    def test_of_a_purchase(self):
        changes = self.changes("CG260302")
        stock = {row["key"]["name"]: (row["before"], row["after"])
                 for row in changes["Stock on hand"]}
        # 20 at 295 each; 5 boxes of 12 at 900 each.
        self.assertEqual(stock, {
            "车架": ({"quantity": 40, "value": 12000}, {"quantity": 60, "value": 17900}),
            "车轮": ({"quantity": 120, "value": 9600}, {"quantity": 180, "value": 14100})})
        supplier = changes["Balances of the supplier"][0]
        self.assertEqual(supplier["key"], {"partner": "华南车架厂"})
        self.assertEqual((supplier["before"]["owed"], supplier["after"]["owed"]), (9450, 19850))
        self.assertEqual(changes["State of the bill"][0]["after"], {"state": 1, "auditor": 16394})

    def test_of_a_new_batch(self):
        rows = self.changes("CG260303")["Stock on hand"]
        self.assertEqual([(row["key"]["batch"], row["before"], row["after"]) for row in rows],
                         [("RH2603", None, {"quantity": 48, "value": 672})])

    def test_of_a_purchase_order(self):
        rows = self.changes("CD260301")["Quantities of the order"]
        self.assertEqual([(row["key"]["line"], row["before"]["on order"], row["after"]["on order"])
                          for row in rows], [(1, 0, 20), (2, 0, 5)])

    def test_of_a_sale_with_a_prepayment(self):
        customer = self.changes("XS260301")["Balances of the customer"][0]
        self.assertEqual(customer["before"], {"owed": 12000, "paid beforehand": 500,
                                              "of it settled": 0, "of it open": 500})
        self.assertEqual(customer["after"], {"owed": 15424, "paid beforehand": 0,
                                             "of it settled": 500, "of it open": 0})

    def test_of_a_transfer_and_an_assembly(self):
        self.assertEqual({(row["key"]["name"], row["key"]["stock"],
                           row["before"]["quantity"] if row["before"] else None,
                           row["after"]["quantity"])
                          for row in self.changes("DB260301")["Stock on hand"]},
                         {("山地车", "主仓库", 10, 8), ("山地车", "门店仓", 5, 7),
                          ("润滑油", "主仓库", 48, 36), ("润滑油", "门店仓", None, 12)})
        self.assertEqual({(row["key"]["name"], row["before"]["quantity"], row["after"]["quantity"])
                          for row in self.changes("ZZ260301")["Stock on hand"]},
                         {("山地车", 10, 12), ("车架", 40, 38), ("车轮", 120, 116),
                          ("链条", 60, 58)})

    def test_of_a_reversed_estimate_both_heads(self):
        self.assertEqual({row["key"]["bill"] for row in self.changes("CG260304")["State of the bill"]},
                         {"CG260304", "CU260302"})


class Choosing(ExplainCase):
    def test_several_bills(self):
        explanations, status = self.explain("XS260301", "XS260305", "CD260301")
        self.assertEqual(status, REFUSED)
        self.assertEqual([each["bill"]["number"] for each in explanations],
                         ["XS260301", "XS260305", "CD260301"])
        self.assertEqual([each["audit"]["verdict"] for each in explanations],
                         ["passed", "refused", "passed"])

    def test_a_number_that_no_bill_has(self):
        self.assert_error(tavcc("explain", "XS999999", "--db", self.db),
                          "no bill has the number XS999999")
        self.assert_error(tavcc("explain", "XS260301", "XS999999", "--db", self.db),
                          "no bill has the number XS999999")
        self.assert_error(tavcc("explain", "", "--db", self.db), 'no bill has the number ""')
        self.assert_error(tavcc("explain", "--id", "0", "--db", self.db), "no bill has id 0")
        self.assert_error(tavcc("explain", "O'Hara", "--db", self.db),
                          "no bill has the number O'Hara")

    def test_a_number_that_several_bills_have(self):
        self.change("UPDATE t_CG_Order SET FBillNo='XS260305' WHERE FID=102")
        self.assert_error(tavcc("explain", "XS260305", "--db", self.db),
                          "2 bills have the number XS260305: 采购订单 XS260305 (class 1020001, id 102),"
                          " 销售单 XS260305 (class 1030002, id 134); say which with --class or --id")
        for words in (("--class", "1030002"), ("--id", "134")):
            explanation, _ = self.explain_one("XS260305", *words)
            self.assertEqual(explanation["bill"]["id"], 134)

    def test_a_bill_by_its_id(self):
        explanation, _ = self.explain_one("--id", "134")
        self.assertEqual(explanation["bill"]["number"], "XS260305")
        self.assert_error(tavcc("explain", "--id", "134", "--class", "1020002", "--db", self.db),
                          "no bill has class 1020002 and id 134")

    def test_no_bill_at_all(self):
        self.assert_error(tavcc("explain", "--db", self.db), "which bill?")
        self.assert_error(tavcc("explain", "--class", "1030002", "--db", self.db), "which bill?")

    def test_no_database(self):
        self.assert_error(tavcc("explain", "XS260305"), "--db FILE")
        self.assert_error(tavcc("explain", "XS260305", "--db", self.path("none.db")), "none.db")


class Failures(ExplainCase):
    def test_a_gate_that_fails_does_not_hide_the_others(self):
        self.change("UPDATE T_CC_StockBill SET FRejected=1 WHERE FBillNo='XS260301'")
        self.change("DROP TABLE t_SerialNumList")
        explanation, status = self.explain_one("XS260301")
        self.assertEqual(status, FAILED)
        self.assertEqual(explanation["verdict"], "failed")
        answers = [(gate["gate"], gate["answer"]) for gate in self.stopped(explanation["gates"])]
        self.assertEqual(answers, [("rejected", "refused"), ("serial numbers", "failed")])
        failed = self.gate(explanation, "serial numbers")
        self.assertIn("208", failed["message"])
        self.assertIn("t_SerialNumList", failed["message"])
        self.assertIn("t_SerialNumList", failed["statement"]["sql"])
        # The audit stops before it.
        self.assertEqual(explanation["audit"]["verdict"], "refused")

    def test_an_error_that_a_rule_keeps_to_itself(self):
        # Without a table of prices the price check answers 0, which lets a bill pass.
        self.change("DROP TABLE T_ItemPrice")
        explanation, status = self.explain_one("XS260308")
        self.assertEqual(status, FAILED)
        self.assertEqual(self.gate(explanation, "limit prices")["answer"], "failed")
        self.assertIn("T_ItemPrice", self.gate(explanation, "limit prices")["message"])
        self.assertEqual(explanation["audit"]["verdict"], "failed")

    def test_an_audit_that_the_database_refuses(self):
        self.change("DROP PROCEDURE sp_UpdateInventoryForFLTJ")
        self.change("CREATE PROCEDURE sp_UpdateInventoryForFLTJ @ClassTypeID int, @billTypeID int,"
                    " @FID int, @AuditOrUnAddit int, @ErrorMessage nvarchar(255) OUTPUT AS"
                    " SET @ErrorMessage = N'月末已结账'")
        explanation, status = self.explain_one("TJ260301")
        self.assertEqual(status, REFUSED)
        self.assertEqual(explanation["audit"]["verdict"], "refused")
        self.assertEqual([(gate["gate"], gate["message"])
                          for gate in self.stopped(explanation["gates"])],
                         [("posting", "月末已结账")])


class Text(ExplainCase):
    def text(self, *words):
        answer = tavcc("explain", "--db", self.db, *words)
        self.assertEqual(answer.stderr, "")
        return answer.stdout

    def test_a_refusal(self):
        text = self.text("XS260305")
        for line in (
                "销售单 XS260305 (class 1030002, id 134)\n",
                "The audit refuses it.\n",
                "  passed    maker           General/SingleMan = 0\n",
                "  refused   negative stock  审核出现负库存商品！  [stock.negative]\n",
                "reason    line 1, item 01.005 内胎, stock 主仓库, in stock 200, wanted 999, short by 799\n",
                "remedy    Lower the quantity, receive goods first, or set IC/UnderStock to 1.\n",
                "The audit would change nothing.\n"):
            self.assertIn(line, text)
        self.assertNotIn("downstream", text, "a gate that is for other bills")

    def test_everything(self):
        text = self.text("XS260301", "--full")
        self.assertIn("Select FStatus, FVoucherID,FDate,FBillerID From T_CC_StockBill where FID=112",
                      text)
        self.assertIn("not asked", text)

    def test_changes(self):
        text = self.text("CD260301")
        self.assertIn("The audit passes it.\n", text)
        self.assertIn("What the audit would change:\n", text)
        self.assertIn("Quantities of the order:", text)


def comparable(value):
    """Without times, and without the zeros behind a point that a driver may not tell."""
    if isinstance(value, dict):
        return {key: comparable(each) for key, each in value.items() if key != "milliseconds"}
    if isinstance(value, list):
        return [comparable(each) for each in value]
    if isinstance(value, str) and re.fullmatch(r"-?\d+\.\d+", value):
        return value.rstrip("0").rstrip(".")
    return value


class OverOdbc(case.Served, ExplainCase):
    """The same of a database that a server has."""

    def test_the_ten_refused_bills(self):
        numbers = list(TEN_REFUSED)
        before = self.rows(EVERYTHING)
        answer = self.over_odbc("explain", "--json", *numbers)
        self.assertEqual((answer.returncode, answer.stderr), (REFUSED, ""))
        explanations = json.loads(answer.stdout)
        for explanation in explanations:
            gate, name, message, reason = TEN_REFUSED[explanation["bill"]["number"]]
            first = self.stopped(explanation["gates"])[0]
            self.assertEqual((first["gate"], first["refusal"]["name"], first["message"],
                              first["reasons"]), (gate, name, message, [reason]))
        self.assertEqual(self.rows(EVERYTHING), before)
        on_the_file, _ = self.explain(*numbers)
        self.assertEqual(comparable(explanations), comparable(on_the_file))

    def test_what_an_audit_would_change(self):
        for words in (["CG260302", "XS260301", "DB260301", "ZZ260301", "TJ260301", "CD260301"],
                      ["CG260301", "--un-audit"]):
            before = self.rows(EVERYTHING)
            answer = self.over_odbc("explain", "--json", *words)
            self.assertEqual(answer.stderr, "")
            self.assertEqual(self.rows(EVERYTHING), before)
            on_the_file, _ = self.explain(*words)
            self.assertEqual(comparable(json.loads(answer.stdout)), comparable(on_the_file))


# What an audit writes.
EVERYTHING = """
SELECT 'stock', FItemID, FStockID, FBatchNo, FQty, FBal FROM T_CC_Inventory
UNION ALL SELECT 'bill', FID, FStatus, FBillNo, FCheckerID, FNoInvoiceAmt FROM T_CC_StockBill
UNION ALL SELECT 'supplier', FItemID, 0, FName, FCurReceAmount, FCurPrepAmount FROM t_Supplier
UNION ALL SELECT 'customer', FItemID, 0, FName, FCurReceAmount, FCurPrepAmount FROM t_Organization
UNION ALL SELECT 'price', FItemID, FCustID, '', FSupplyID, FPrice FROM t_LatestPrice"""


# 10,000 sales of three lines each, over 100,000 rows of stock.
MANY = """
CREATE TABLE N (i int NOT NULL PRIMARY KEY)
INSERT INTO N VALUES (0)
DECLARE @count int
SET @count = 1
WHILE @count < 100000
BEGIN
  INSERT INTO N SELECT i + @count FROM N WHERE i + @count < 100000
  SET @count = @count * 2
END
INSERT INTO T_CC_Inventory (FItemID, FStockID, FBatchNo, FKFDate, FPeriodDate, FQty, FBal)
  SELECT 2000000 + i, 2001, '', '1900-01-01', '1900-01-01', 100, 300 FROM N
INSERT INTO T_CC_StockBill (FID, FClassTypeID, FBillTypeID, FBillNo, FDate, FCustID, FBillerID,
    FAllAmount)
  SELECT 10000 + i, 1030002, 3001, 'MANY' + CONVERT(varchar(10), i), '20260312', 5001, 16390, 100
  FROM N WHERE i < 10000
INSERT INTO T_CC_StockBillEntry (FID, FEntryID, FIndex, FItemID, FSCStockID, FUnitID, FShowUnitID,
    FCoefficient, FQty, FShowQty, FPrice)
  SELECT 10000 + b.i, l.i + 1, l.i + 1, 1004 + l.i % 2, 2002, 103, 103, 1, 1, 1, 880
  FROM N b CROSS JOIN N l WHERE b.i < 10000 AND l.i < 3
DROP TABLE N"""


class Many(ExplainCase):
    def test_a_bill_among_many_is_explained_at_once(self):
        if "/asan/" in case.TAVCC or "/tsan/" in case.TAVCC:
            self.skipTest("sanitizers take their time")
        answer = tavcc("sql", "--db", self.db, MANY)
        self.assertEqual((answer.returncode, answer.stderr), (PASSED, ""))
        self.assertEqual(self.rows("SELECT (SELECT COUNT(*) FROM T_CC_StockBill WHERE FID >= 10000),"
                                   " (SELECT COUNT(*) FROM T_CC_Inventory WHERE FItemID >= 2000000)"),
                         [[10000, 100000]])
        # Of the processor, so that a busy machine says the same; the least of a few.
        seconds = []
        for _ in range(5):
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            answer = tavcc("explain", "MANY5000", "--db", self.db)
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            self.assertEqual((answer.returncode, answer.stderr), (PASSED, ""))
            seconds.append(after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime)
        print(f"explain took {min(seconds):.3f} s of the processor")
        self.assertLess(min(seconds), 0.2)


class RefusalsCommand(Case):
    def test_all_of_them(self):
        catalogue = json.loads(tavcc("refusals", "--json").stdout)
        self.assertGreater(len(catalogue), 30)
        self.assertEqual(tavcc("refusals").stdout.count("  cause "), len(catalogue))

    def test_one_of_them(self):
        for words in ("bill.rejected", "该单据为驳回状态!",
                      "编号为：XS260303的销售单单据审核失败！失败原因：该单据为驳回状态!|"):
            answer = tavcc("refusals", words)
            self.assertEqual(answer.returncode, PASSED)
            self.assertTrue(answer.stdout.startswith("bill.rejected\n"), answer.stdout)

    def test_one_that_is_none(self):
        self.assert_error(tavcc("refusals", "stock.negativ"), "did you mean stock.negative?")


class Document(ExplainCase):
    """docs/explain.md shows what the program prints, but for the numbers of lines in sources."""

    DOCUMENT = case.document("explain.md")

    @staticmethod
    def without_line_numbers(text):
        return re.sub(r"(src/\w+/\w+\.cpp):\d+", r"\1:N", text)

    def test_its_examples(self):
        with tempfile.TemporaryDirectory() as folder:
            shutil.copy(case.TRACE, folder)
            examples = list(case.follow("explain.md", folder))
        self.assertGreater(len(examples), 4)
        for shown, came in examples:
            self.assertEqual(self.without_line_numbers(shown), self.without_line_numbers(came))

    def test_its_table_of_refusals(self):
        rows = re.findall(r"^\| `([a-z_]+\.[a-z_]+)` \| (.*) \| (.*) \|$", self.DOCUMENT, re.M)
        catalogue = json.loads(tavcc("refusals", "--json").stdout)
        self.assertEqual(rows, [(each["name"], each["cause"], each["remedy"])
                                for each in catalogue])

    def test_its_keys(self):
        explanation, _ = self.explain_one("XS260305")
        gates = explanation["gates"] + explanation["host_gates"] + explanation["own_gates"]
        keys = {key for gate in gates for key in gate} | set(explanation) | set(explanation["audit"])
        keys |= {key for gate in gates for key in gate.get("refusal", {})} | {"error"}
        for key in keys:
            self.assertIn(f"`{key}`", self.DOCUMENT)


if __name__ == "__main__":
    case.main(served=True)
