' For a host of scripts that has no events.
Option Explicit
Dim gps
Set gps = CreateObject("Marlune.GpsControl")
WScript.Echo gps.getIdent
