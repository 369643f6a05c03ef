' What a script may do with the control: pass a variable, call members inside handlers, read errors.
Option Explicit

Dim gps, file, result
file = WScript.Arguments(0)
Set gps = WScript.CreateObject("Marlune.GpsControl", "Gps_")
gps.SetGpsMark = "GRM"
gps.setNumPort = 3
WScript.Echo "connected: " & gps.gpsConnect()

' A variable goes by reference; it keeps its value.
result = gps.SendWaypts(file)
WScript.Echo TypeName(result) & " " & result & ", file kept: " & (file = WScript.Arguments(0))

gps.getTracks
gps.gpsDisconnect

On Error Resume Next
gps.setNumPort = "three"
WScript.Echo Err.Description
Err.Clear
gps.getWaypts 1, 2
WScript.Echo Err.Description

Sub Gps_StartUpload(DataType, nbitem, Entete)
    WScript.Echo "upload " & DataType & " " & nbitem
End Sub

Sub Gps_TrackHeader(numitem, TrkHeader, sens)
    WScript.Echo TrkHeader
End Sub

Sub Gps_TrackData(numitem, trackItem, sens)
    WScript.Echo "point " & numitem & " of " & Left(gps.getIdent, 7)
    gps.StopTransfert
End Sub

Sub Gps_EndDownload(DataType)
    WScript.Echo "end " & DataType
End Sub
