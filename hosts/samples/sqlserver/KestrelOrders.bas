Attribute VB_Name = "KestrelOrders"
' How a standard module uses KestrelLedger.cls: one invoice number for each order. Not run by the tests, see there.
Option Explicit

Public Sub NumberAnOrder()
    Dim ledger As New KestrelLedger
    ledger.OpenLedger "Provider=MSOLEDBSQL;Data Source=SERVER;Initial Catalog=DATABASE;Integrated Security=SSPI", "invoices"
    ledger.Fields("Year").Value = "2026"
    Debug.Print ledger.Issue("order 4711") ' as often as it is run, the same number
End Sub
