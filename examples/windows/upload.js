// Sends a text file of waypoint lines to a Garmin receiver.
//
//   cscript //nologo upload.js FILE [PORT]
//
// PORT is the number of the COM port, 3 when it is not given.
var gps = WScript.CreateObject("Marlune.GpsControl", "Gps_");
var sent = 0;

// Raised for every record before it goes out. The control waits for the receiver without a look at
// the script's messages; Sleep gives them their turn.
function Gps_WayptData(numitem, WayptItem, sens) {
    sent = numitem;
    WScript.Echo(sens + " " + WayptItem);
    WScript.Sleep(1);
}

function Gps_EndUpload(DataType) {
    WScript.Echo(sent + " sent");
}

gps.SetGpsMark = "GRM";
gps.setNumPort = WScript.Arguments.length > 1 ? WScript.Arguments.Item(1) : 3;
if (!gps.gpsConnect()) {
    WScript.Quit(1);
}
gps.SendWaypts(WScript.Arguments.Item(0));
gps.gpsDisconnect();
