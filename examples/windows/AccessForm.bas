' The module of an Access form with a text box "Status", a list box "Waypoints" (Row Source Type:
' Value List), and the buttons "Download" and "StopButton".
'
' In the editor (Alt+F11): Tools, References, "Marlune GPS transfer control"; then paste this into
' the form's module. The bitness of Access decides which library is used. The control does not have to
' stand on the form: it is made here, and its events arrive all the same.
Option Compare Database
Option Explicit

Private WithEvents gps As Marlune.GpsControl

Private Sub Form_Load()
    Set gps = New Marlune.GpsControl
    gps.SetGpsMark = "GRM"
    gps.setNumPort = Comm3
    Me.StopButton.Enabled = False
End Sub

Private Sub Download_Click()
    Me.Waypoints.RowSource = ""
    Me.StopButton.Enabled = True
    Me.StopButton.SetFocus          ' a button that has the focus cannot be disabled
    Me.Download.Enabled = False     ' DoEvents below lets clicks in: no second download
    If gps.gpsConnect() Then
        Me.Status = gps.getIdent
        gps.getWaypts               ' the result says nothing over a serial line
        gps.gpsDisconnect
    End If
    Me.Download.Enabled = True
    Me.Download.SetFocus
    Me.StopButton.Enabled = False
End Sub

Private Sub StopButton_Click()
    gps.StopTransfert               ' ends after the record in hand
End Sub

Private Sub gps_WayptData(ByVal numitem As Integer, ByVal WayptItem As String, ByVal sens As String)
    Me.Waypoints.AddItem """" & Replace(WayptItem, """", "'") & """"
    DoEvents                        ' the control does not: without it, StopButton is deaf
End Sub

Private Sub gps_GpsInfo(ByVal txtInfo As String)
    Me.Status = txtInfo
End Sub

Private Sub Form_Unload(Cancel As Integer)
    gps.gpsDisconnect               ' also in the middle of a download
End Sub
