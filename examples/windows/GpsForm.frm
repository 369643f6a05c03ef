VERSION 5.00
Object = "{C8902A38-CF05-4271-83BA-6826EECCE0D2}#1.0#0"; "marlune.ocx"
Begin VB.Form GpsForm
   Caption         =   "GPS"
   ClientHeight    =   4335
   ClientLeft      =   60
   ClientTop       =   345
   ClientWidth     =   6585
   ScaleHeight     =   4335
   ScaleWidth      =   6585
   StartUpPosition =   3
   Begin Marlune.GpsControl gps
      Left            =   120
      Top             =   120
      _ExtentX        =   847
      _ExtentY        =   847
   End
   Begin VB.CommandButton DownloadButton
      Caption         =   "Waypoints"
      Height          =   375
      Left            =   840
      TabIndex        =   0
      Top             =   120
      Width           =   1335
   End
   Begin VB.CommandButton StopButton
      Caption         =   "Stop"
      Enabled         =   0   'False
      Height          =   375
      Left            =   2280
      TabIndex        =   1
      Top             =   120
      Width           =   1335
   End
   Begin VB.ListBox Waypoints
      Height          =   3375
      Left            =   120
      TabIndex        =   2
      Top             =   720
      Width           =   6375
   End
End
Attribute VB_Name = "GpsForm"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
' A Visual Basic 6 form with the control on it. Visual Basic is a 32-bit program: the 32-bit library
' must be registered. F1 on a member's name opens its page of the manual.
Option Explicit

Private Sub DownloadButton_Click()
    Waypoints.Clear
    DownloadButton.Enabled = False  ' DoEvents below lets clicks in: no second download
    StopButton.Enabled = True
    gps.SetGpsMark = "GRM"
    gps.setNumPort = Comm3
    If gps.gpsConnect() Then
        Caption = gps.getIdent
        gps.getWaypts               ' the result says nothing over a serial line
        gps.gpsDisconnect
    End If
    StopButton.Enabled = False
    DownloadButton.Enabled = True
End Sub

Private Sub StopButton_Click()
    gps.StopTransfert               ' ends after the record in hand
End Sub

Private Sub gps_WayptData(ByVal numitem As Integer, ByVal WayptItem As String, ByVal sens As String)
    Waypoints.AddItem WayptItem
    DoEvents                        ' the control does not: without it, Stop is deaf
End Sub

Private Sub Form_QueryUnload(Cancel As Integer, UnloadMode As Integer)
    gps.gpsDisconnect               ' also in the middle of a download
End Sub
