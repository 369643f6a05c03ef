// The smallest host: connects to a Garmin unit and prints its waypoints.
#include <iostream>

#include "marlune/GpsControl.h"
#include "marlune/SystemHost.h"

struct Printer : marlune::GpsControlEvents {
    void WayptData(std::int16_t number, const std::string& line, const std::string&) override {
        std::cout << number << ": " << line << '\n';
    }
};

int main() {
    marlune::SystemHost host;  // derive from it to show boxes in your own windows
    host.bindPort(1, "/dev/ttyUSB0");
    Printer events;
    marlune::GpsControl gps(host, events);
    gps.SetGpsMark("GRM");
    gps.setNumPort(marlune::numPort::Comm1);
    if (gps.gpsConnect()) {
        std::cout << gps.getIdent() << '\n';
        gps.getWaypts();
        gps.gpsDisconnect();
    }
}
