"""tavcc call: what is checked of its arguments, several calls on one object, --rollback."""

import json

import case
from case import ASSEMBLY_BILL, FAILED, PASSED, REFUSED, Case, tavcc

BILL = {"ClassTypeID": 1030002, "BillInterID": 134, "BillType": 3001, "BillNo": "XS260305",
        "HeadTableName": "T_CC_StockBill", "CustOrSupplyID": 5001, "AllAmount": 14985}


def without(key):
    return {name: value for name, value in BILL.items() if name != key}


class Arguments(Case):
    def audit(self, bills, *words):
        return self.call("PublicSysInfo.AuditBill", "billVect=" + json.dumps(bills), "CheckType=1",
                         "BatchCheck=true", *words)

    def test_a_misspelt_key_is_told(self):
        answer = self.audit([BILL, dict(without("BillNo"), BilNo="X")])
        self.assert_error(answer, 'argument billVect[2]: AuditBill reads no key "BilNo"; did you '
                                  "mean BillNo? (--unchecked sends it as it is)")

    def test_an_unknown_key_is_told(self):
        answer = self.call("PublicSysInfo.DeleteBill",
                           'oDict={"BillInterID":1,"HeadTableName":"T","Frobnicate":2}')
        self.assert_error(answer, 'argument oDict: DeleteBill reads no key "Frobnicate"')

    def test_a_key_that_other_methods_read_of_a_bill_is_no_mistake(self):
        answer = self.call("PublicSysInfo.WhetherCheckStockNum", "intCheckType=1",
                           "oDict=" + json.dumps(BILL))
        self.assertEqual(answer.returncode, PASSED, answer.stderr)

    def test_a_missing_key_is_told(self):
        for key in ("ClassTypeID", "BillInterID", "BillType", "HeadTableName", "BillNo",
                    "CustOrSupplyID", "AllAmount"):
            with self.subTest(key):
                self.assert_error(self.audit([without(key)]),
                                  f'argument billVect[1]: AuditBill needs "{key}" (')

    def test_a_partner_is_needed_where_there_is_one(self):
        """A disassembly has none."""
        bill = {"ClassTypeID": 1040006, "BillInterID": 122, "BillType": 0, "BillNo": "CX260301",
                "HeadTableName": "T_CC_ZZCX"}
        answer = self.audit([bill], "--rollback")
        self.assertNotEqual(answer.returncode, FAILED, answer.stderr)

    def test_keys_are_found_without_regard_to_case(self):
        answer = self.audit([{key.lower(): value for key, value in BILL.items()}], "--rollback")
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)

    def test_a_dictionary_that_is_not_given_lacks_its_keys(self):
        self.assert_error(self.call("PublicSysInfo.WhetherCheckStockNum", "intCheckType=1"),
                          'argument oDict: WhetherCheckStockNum needs "ClassTypeID"')

    def test_keys_of_inner_dictionaries_are_checked(self):
        answer = self.call("cls_ZZ.AfterSave", 'dctTableInfo={"Map":{"FItemID":"k1"}}',
                           'dctData={"FID":1,"FClassTypeID":1,"Page2":[{"k1":{"FLD":"7"}}]}')
        self.assert_error(answer, 'argument dctData.Page2[1].k1: AfterSave reads no key "FLD"; did '
                                  "you mean FFLD?")

    def test_a_direction_that_means_nothing_is_told(self):
        text = "2 is no direction: 1 audits, -1 un-audits (--unchecked sends it as it is)"
        for words in (["PublicSysInfo.WhetherCheckStockNum", "intCheckType=2",
                       "oDict=" + json.dumps(BILL)],
                      ["PublicSysInfo.CanCheckGH", "ClassBillType=1020002", "BillTypeID=2011",
                       "BillInterID=101", "Check=2"],
                      ["PublicSysInfo.UpdateBal", "lClassTypeID=1020002", "lBillTypeID=2011",
                       "lBillID=101", "lCheckType=2"],
                      ["CheckLoss.CheckBill", "lngInterID=1", "CheckDir=2"]):
            with self.subTest(words[0]):
                self.assert_error(self.call(*words), text)

    def test_unchecked_sends_all_of_it(self):
        answer = self.call("PublicSysInfo.WhetherCheckStockNum", "intCheckType=2",
                           'oDict={"Frobnicate":1}', "--unchecked")
        self.assertEqual(answer.returncode, PASSED, answer.stderr)

    def test_the_refusal_has_its_name(self):
        self.change(f"update T_CC_ZZCX set FStatus=1 where FID={ASSEMBLY_BILL}")
        answer = self.call("cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7", "--json")
        self.assertEqual(answer.returncode, REFUSED)
        self.assertIn("refusal", json.loads(answer.stdout))

    def test_bill_info_is_a_line_per_bill(self):
        """Two bills, one answer."""
        other = dict(BILL, BillInterID=999, BillNo="NONE")
        answer = self.audit([BILL, other], "--rollback")
        lines = [line for line in answer.stdout.split("\n") if line.startswith("    编号为：")]
        self.assertEqual([line[8:line.index("的")] for line in lines], ["XS260305", "NONE"])
        self.assertNotIn("|", answer.stdout)


class Several(Case):
    def status(self):
        return self.rows(f"select FStatus from T_CC_ZZCX where FID={ASSEMBLY_BILL}")

    def test_rollback_keeps_nothing(self):
        answer = self.call("cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7",
                           "--rollback")
        self.assertEqual(answer.returncode, PASSED, answer.stderr)
        self.assertTrue(answer.stdout.endswith("What the call did was rolled back.\n"))
        self.assertEqual(self.status(), [[0]])

    def test_calls_share_a_transaction(self):
        answer = self.call("cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7", "--then",
                           "UnAuditBill", f"lngFID={ASSEMBLY_BILL}", "--then",
                           "cls_CX.VerifyDataBeforeAudit", f"lngFID={ASSEMBLY_BILL}", "--json")
        self.assertEqual(answer.returncode, PASSED, answer.stderr + answer.stdout)
        self.assertEqual([record["verdict"] for record in json.loads(answer.stdout)],
                         ["passed", "passed", "passed"])
        self.assertEqual(self.status(), [[0]])

    def test_a_call_stands_on_the_one_before_it(self):
        """The related-bill gate works on the database that an earlier call has named."""
        gate = ["CanCheckGH", "ClassBillType=1020002", "BillTypeID=2011", "BillInterID=101",
                "Check=1"]
        alone = self.call("PublicSysInfo." + gate[0], *gate[1:])
        self.assertEqual(alone.returncode, FAILED, alone.stdout)
        answer = self.call("PublicSysInfo.WhetherBillInvoiceStatus",
                           "oDict=" + json.dumps({"BillInterID": 101, "ClassTypeID": 1020002}))
        self.assertEqual(answer.returncode, FAILED, answer.stdout)
        after = self.call("PublicSysInfo.CheckItemStockNum", "intCheckType=1",
                          "oDict=" + json.dumps(BILL), "--then", *gate)
        self.assertIn("CanCheckGH", after.stdout)
        self.assertNotEqual(after.returncode, FAILED, after.stdout)

    def test_the_worst_of_the_verdicts_counts(self):
        answer = self.call("cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7", "--then",
                           "AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7")
        self.assertEqual(answer.returncode, REFUSED, answer.stderr)
        self.assertEqual(self.status(), [[1]])

    def test_a_failing_call_undoes_them_all_and_ends_them(self):
        self.change("drop table T_CC_ZZCX_Entry")
        answer = self.call("cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7", "--then",
                           "UnAuditBill", f"lngFID={ASSEMBLY_BILL}", "--then", "DeleteBill",
                           f"lngFID={ASSEMBLY_BILL}", "--then", "AuditBill",
                           f"lngFID={ASSEMBLY_BILL}", "lngUserID=8")
        self.assertEqual(answer.returncode, FAILED, answer.stdout)
        self.assertEqual(answer.stdout.count("cls_CX."), 3, answer.stdout)
        self.assertTrue(answer.stdout.endswith("What the calls did was undone.\n"), answer.stdout)
        self.assertEqual(self.status(), [[0]])

    def test_the_calls_are_those_of_one_object(self):
        answer = self.call("cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7", "--then",
                           "cls_DB.AuditBill", "lngFID=1", "lngUserID=7")
        self.assert_error(answer, "--then cls_DB.AuditBill: the calls are those of one object, a "
                                  "cls_CX")

    def test_mistakes_in_a_later_call_are_told_before_the_first(self):
        for words, text in ((["AuditBil"], 'cls_CX has no method "AuditBil"'),
                            (["AuditBill", "lngFID=x"], "no whole number"),
                            (["AuditBill", "lngFID=1"], "argument lngUserID (I4) is missing")):
            with self.subTest(words):
                answer = self.call("cls_CX.AuditBill", f"lngFID={ASSEMBLY_BILL}", "lngUserID=7",
                                   "--then", *words)
                self.assert_error(answer, text)
                self.assertEqual(self.status(), [[0]])


class Keys(Case):
    def test_a_method_has_the_keys_of_its_dictionaries(self):
        answer = tavcc("classes", "PublicSysInfo.AuditBill")
        self.assertEqual(answer.returncode, PASSED, answer.stderr)
        self.assertRegex(answer.stdout, r"PublicSysInfo\.AuditBill\(Bzo\.Vector billVect, ")
        self.assertRegex(answer.stdout, r"\n  answers I2; writes\n\nbillVect, each\n")
        self.assertRegex(answer.stdout, r"\n  ClassTypeID +long +in +the bill's class type\n")
        self.assertRegex(answer.stdout, r"\n  CustOrSupplyID +long +in .*needed for the classes "
                                        r"1020002, 1020004, 1030002, 1030004\n")
        self.assertRegex(answer.stdout, r"\n  SuccessCount +long +out ")

    def test_as_json(self):
        method = json.loads(tavcc("classes", "--json", "PublicSysInfo.CheckNegPrice").stdout)
        self.assertIs(method["writes"], False)
        bills = method["parameters"][1]
        self.assertEqual(bills["name"], "vctBill")
        self.assertEqual([key["key"] for key in bills["keys"]],
                         ["ClassTypeID", "BillType", "BillInterID"])

    def test_what_is_no_method_is_told(self):
        self.assert_error(tavcc("classes", "PublicSysInfo.AuditBil"), "did you mean AuditBill?")


if __name__ == "__main__":
    case.main()
