' A script host uses the component by name. Ends with "N passed, N failed" and the number of
' failures as its code: whoever runs it looks for both, because a script that breaks off is silent.
Option Explicit

Dim passed, failed
passed = 0
failed = 0

Sub Expect(what, found, wanted)
  If found = wanted Then
    passed = passed + 1
  Else
    failed = failed + 1
    WScript.Echo what & ": found '" & found & "', wanted '" & wanted & "'"
  End If
End Sub

Sub Assign(checker, entry)
  Set checker.RsTesta = entry.RecordSet("RsTesta")
  Set checker.RsRIva = entry.RecordSet("RsRIva")
  Set checker.RsRCont = entry.RecordSet("RsRCont")
  Set checker.RsScadenze = entry.RecordSet("RsScadenze")
End Sub

Dim checker, entry, answer, crlf, printed, header
crlf = Chr(13) & Chr(10)
Set entry = CreateObject("KalDoubles.Entry")
Set checker = CreateObject("Kal_COGCheck.KalCOGCheck")

Expect "new object", checker.ErrString & checker.WarnString & checker.WarnStringModifica, ""
Expect "new object, in a group", checker.IsInfragruppo, "False"
checker.TmpTableScadenze = "Tmp" & Chr(128)
Expect "text property", checker.TmpTableScadenze, "Tmp" & Chr(128)
checker.IsParcella = False
checker.IsFromCard = True
Expect "type of an amount", TypeName(checker.ImportoPlafond), "Currency"
Expect "amount", checker.ImportoPlafond, 0
Expect "reserved entry point", checker.GenericFx("x", entry), 0

Assign checker, entry
Expect "save, in other letters", checker.okaggiorna(True, True), True
Expect "date as a field", checker.LibroGiornaleStampato( _
    entry.RecordSet("RsTesta").Fields("DataRegistrazione")), False
entry.Play "Riga senza conto e riga su un mastro"
Assign checker, entry
answer = checker.OkAggiorna(True, True)
Expect "type of the answer", TypeName(answer), "Boolean"
Expect "refused", answer, False
Expect "two messages", UBound(Split(checker.ErrString, crlf)), 1

entry.Play "Il giornale di gennaio " & Chr(232) & " stampato"
printed = DateSerial(2024, 1, 15)
Expect "date in a variable", checker.LibroGiornaleStampato(printed), True
Expect "date as a text", checker.LibroGiornaleStampato("15/01/2024"), True
entry.Play "Numero della prima nota di un documento"
Expect "number", checker.LeggiIdPrimaNota(3001, 4), 2009

entry.Play "Fattura di acquisto di merci, pagamento in due rate"
Assign checker, entry
On Error Resume Next
entry.FailAt 1
answer = checker.OkAggiorna(True, True)
Expect "number of an error", Err.Number, -2147467259
Expect "source of an error", Err.Source, "Errore ( -2147467259 ) - Componente ( Societ" & _
    Chr(224) & " )" & crlf & "Kal_COGCheck.KalCOGCheck.OkAggiorna"
Expect "description of an error", Err.Description, "guasto"
Err.Clear
Set checker.RsTesta = Nothing
answer = checker.OkAggiorna(True, True)
Expect "number of the language", Err.Number, 91
Err.Clear
answer = checker.LibroGiornaleStampato(Null)
Expect "Null", Err.Number, 94
Err.Clear
' Errors of arguments carry the operation's tag; what an operation does not read raises nothing.
Sub ExpectError(what, number, component, tag)
  Expect what & ": number", Err.Number, number
  Expect what & ": source", Err.Source, "Errore ( " & number & " ) - Componente ( " & _
      component & " )" & crlf & "Kal_COGCheck.KalCOGCheck." & tag
  Err.Clear
End Sub
answer = checker.LibroGiornaleStampato(Array(1))
ExpectError "array", 13, "Kal_COGCheck", "LibroGiornaleStampato"
Set header = entry.RecordSet("RsTesta")
header.MoveNext
answer = checker.LibroGiornaleStampato(header.Fields("DataRegistrazione"))
ExpectError "field at the end", 3021, "ADODB.Recordset", "LibroGiornaleStampato"
Set header = Nothing
answer = checker.RegistriIvaStampati(Nothing, 1, 1)
ExpectError "nothing", 91, "Kal_COGCheck", "RegistriIvaStampati"
answer = checker.CheckDuplicatoNrDocRicevuto("A", Array(1), 20, 0)
ExpectError "date of a received document", 13, "Kal_COGCheck", "CheckDuplicatoNrDocRicevuto"
answer = checker.CheckDuplicatoNrDocEmesso(2, 1, "A", Array(1), 0)
ExpectError "date of an issued document", 13, "Kal_COGCheck", "CheckDuplicatoNrDocEmesso"
Expect "no register", checker.RegistriIvaStampati(Array(1), 0, 1), False
Expect "no register: number", Err.Number, 0
Set checker.RsScadenze = entry
ExpectError "no record set", 13, "Kal_COGCheck", "RsScadenze"
answer = checker.Altro
Expect "no such member", Err.Number, 438
Err.Clear
On Error GoTo 0

Set checker = Nothing
Expect "nothing held", entry.Live, 1

WScript.Echo passed & " passed, " & failed & " failed"
WScript.Quit failed
