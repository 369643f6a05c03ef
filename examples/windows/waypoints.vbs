' Prints the waypoints of a Garmin receiver, one line each.
'
'   cscript //nologo waypoints.vbs [PORT]
'
' PORT is the number of the COM port, 3 when it is not given. The bitness of cscript decides which
' marlune.ocx must be registered: C:\Windows\System32\cscript.exe is the 64-bit one.
Option Explicit

Dim gps, port
port = 3
If WScript.Arguments.Count > 0 Then port = CInt(WScript.Arguments(0))

Set gps = WScript.CreateObject("Marlune.GpsControl", "Gps_")
gps.SetGpsMark = "GRM"
gps.setNumPort = port
If Not gps.gpsConnect() Then WScript.Quit 1
gps.getWaypts
gps.gpsDisconnect

' Every record arrives here while getWaypts runs. The control reads the line without a look at the
' script's messages; Sleep gives them their turn.
Sub Gps_WayptData(numitem, WayptItem, sens)
    WScript.Echo WayptItem
    WScript.Sleep 1
End Sub
