Attribute VB_Name = "Waypoints"
' Fills the active sheet of Excel with the waypoints of a Garmin receiver, one row each, one column
' per field.
'
' In the editor (Alt+F11): File, Import File, this file and GpsEvents.cls; Tools, References,
' "Marlune GPS transfer control". A 64-bit Excel needs the 64-bit marlune.ocx.
Option Explicit

Private events As GpsEvents

Public Sub DownloadWaypoints()
    Set events = New GpsEvents
    events.Download ActiveSheet, Comm3
End Sub
