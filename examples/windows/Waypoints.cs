// Prints the waypoints of a Garmin receiver from C#.
//
// The interop assembly is made once, from the control's types, by the tool that comes with the
// Windows SDK; it is yours, and is not shipped with the control:
//
//   tlbimp "C:\Program Files\Marlune\x64\marlune.ocx" /out:Interop.Marlune.dll
//   csc /platform:x64 /r:Interop.Marlune.dll Waypoints.cs
//
// /platform decides which library is used; for the 32-bit one: x86\marlune.ocx and /platform:x86.
// In Visual Studio: Add Reference, COM, "Marlune GPS transfer control" does the first step.
using System;
using System.Windows.Forms;
using Marlune;

static class Waypoints
{
    [STAThread]  // the control lives in a single-threaded apartment
    static int Main(string[] arguments)
    {
        var gps = new GpsControl();
        gps.WayptData += (numitem, line, sens) =>
        {
            Console.WriteLine(line);
            // The control reads the line without a look at the thread's messages. On a form, this
            // keeps its windows alive; disable what would start a second transfer.
            Application.DoEvents();
        };
        gps.SetGpsMark = "GRM";
        gps.setNumPort = arguments.Length > 0 ? (numPort)int.Parse(arguments[0]) : numPort.Comm3;
        if (!gps.gpsConnect())
        {
            return 1;
        }
        gps.getWaypts();
        gps.gpsDisconnect();
        return 0;
    }
}
