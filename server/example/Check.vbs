' A script host in one page:
'
'   cscript //nologo Check.vbs ENTRY   checks the entry whose record sets the object of that class
'                                      name hands out
'
' An accounting system has ADO record sets of its own in the place of that object.
Option Explicit

Dim checker, entry, ok
Set checker = CreateObject("Kal_COGCheck.KalCOGCheck")
Set entry = CreateObject(WScript.Arguments(0))
Set checker.RsTesta = entry.RecordSet("RsTesta")
Set checker.RsRIva = entry.RecordSet("RsRIva")
Set checker.RsRCont = entry.RecordSet("RsRCont")
Set checker.RsScadenze = entry.RecordSet("RsScadenze")

On Error Resume Next
ok = checker.OkAggiorna(True, True)
If Err.Number <> 0 Then
  WScript.Echo "Error " & Err.Number & vbCrLf & Err.Source & vbCrLf & Err.Description
  WScript.Quit 1
End If
WScript.Echo "May be saved: " & ok & vbCrLf & checker.ErrString
