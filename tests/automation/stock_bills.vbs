' What a host's script does: creates the library's classes by ProgID and works on the sample
' company.
' Output is UTF-8, through the reference host, since Wine's own console drops Chinese.
Option Explicit
Dim out, host, plug_in, info, dsn, message

Set out = CreateObject("TavReferenceHost.Output")
Set host = CreateObject("TavReferenceHost.Session")
host.OpenSample ":memory:"
dsn = host.Dsn

Sub Tell(what, done)
  If done Then
    out.Write what & ": done"
  Else
    out.Write what & ": refused, " & message
  End If
End Sub

Sub ShowBill(id)
  Dim rows
  Set rows = host.Query("select FBillNo,FStatus,FCheckerID from T_CC_ZZCX where FID=" & id)
  out.Write "    " & rows.Fields.Item("FBillNo").Value & " status " & _
      rows.Fields.Item("FStatus").Value & ", checker " & rows.Fields.Item("FCheckerID").Value
End Sub

out.Write "Assembly bills, one by one"
Set plug_in = CreateObject("TavM_CC_PlugIns.cls_CX")
message = ""
Tell "audit 121", plug_in.AuditBill(121, host.UserID, dsn, message)
ShowBill 121
Tell "audit 121 again", plug_in.AuditBill(121, host.UserID, dsn, message)
Tell "delete 121", plug_in.DeleteBill(121, dsn, message)
Tell "un-audit 121", plug_in.UnAuditBill(121, dsn, message)
ShowBill 121
Tell "delete 121", plug_in.DeleteBill(121, dsn, message)
Tell "audit 999", plug_in.AuditBill(999, host.UserID, dsn, message)
out.Write "    TransMode " & plug_in.TransMode

Sub AddBill(bills, id, class_type, bill_type, bill_no, partner, amount)
  Dim bill
  Set bill = CreateObject("Bzo.Dictionary")
  bill.Item("ClassTypeID") = class_type
  bill.Item("BillInterID") = id
  bill.Item("BillType") = bill_type
  bill.Item("BillTypeID") = bill_type
  bill.Item("HeadTableName") = "T_CC_StockBill"
  bill.Item("BillNo") = bill_no
  bill.Item("CustOrSupplyID") = partner
  bill.Item("AllAmount") = amount
  bill.Item("FNeutralizeAmount") = 0
  bills.Add bill
End Sub

Sub Batch(direction)
  Dim bills, result, answer
  Set bills = CreateObject("Bzo.Vector")
  AddBill bills, 104, 1020002, 2011, "CG260302", 6001, 10400
  AddBill bills, 105, 1020002, 2011, "CG260303", 6002, 672
  AddBill bills, 999, 1020002, 2011, "CG260399", 6002, 1
  Set result = CreateObject("Bzo.Dictionary")
  answer = info.AuditBill(bills, direction, dsn, True, result)
  out.Write "    answer " & answer & ", passed " & result.Item("SuccessCount") & ", refused " & _
      result.Item("FailCount")
  out.Write "    " & Replace(result.Item("BillInfo"), "|", "|" & vbCrLf & "    ")
End Sub

Sub ShowStock()
  Dim rows
  Set rows = host.Query("select count(*) as n, sum(FQty) as q, sum(FBal) as b from T_CC_Inventory")
  out.Write "    stock: " & rows.Fields.Item("n").Value & " rows, quantity " & _
      rows.Fields.Item("q").Value & ", value " & rows.Fields.Item("b").Value
End Sub

Set info = CreateObject("TavM_CC_PlugIns.PublicSysInfo")
out.Write "A batch of purchase bills"
ShowStock
Batch 1
ShowStock
out.Write "The same batch taken back"
Batch -1
ShowStock
