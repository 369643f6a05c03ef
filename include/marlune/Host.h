// The host application's services: everything the control asks of the program it is placed in.
//
// All time and all waiting of the control go through this interface, so a host decides how the user
// is spoken to, how pending events are processed, and what "now" is. SystemHost (SystemHost.h) is
// the implementation for the running platform; derive from it and override what your program does
// better (a real message box, a real event loop).
//
// While a member runs, a program pumps its events in processEvents(), which comes where procedures
// yield, between two records or reads. From there, from messageBox() and from the control's events
// it may call any member, disconnect, or destroy the control; from no other function here.
// stopRequested() comes at least every 100 ms of a wait for a serial port, also within a read, and
// between two reads on USB: a program may paint there and take its user's wish to stop. Answering
// true ends what runs.
//
// Thread: every function is called on the thread that called the control's member.
// Text: every string is UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "marlune/Export.h"

namespace marlune {

// The icon of a message box: "critical" for errors, "exclamation" for a receiver without
// proximity waypoints, "information" for notices, "none" for a plain box.
enum class BoxIcon { none, critical, exclamation, information };

enum class MousePointer { normal, hourglass };

// One mounted drive, as far as the system tells. Sizes are in bytes; texts may be empty.
struct Drive {
    std::string driveLetter;  // "E" on Windows, the mount point's last component elsewhere
    std::string driveType;
    std::string fileSystem;
    std::uint64_t availableSpace = 0;
    std::uint64_t freeSpace = 0;
    std::uint64_t totalSize = 0;
    bool isReady = false;
    std::string path;
    std::string rootFolder;  // the folder that relative names of the drive start from
    std::string serialNumber;
    std::string shareName;
    std::string volumeName;
};

class MARLUNE_EXPORT Host {
public:
    Host() = default;
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    virtual ~Host() = default;

    // Shows a text and returns when the user has seen it. The text may hold line breaks.
    virtual void messageBox(const std::string& text, BoxIcon icon) = 0;

    // Asks the user for a file. Returns its path, or an empty text when the user declines or when
    // there is no user interface, as by default. Asked only by a reader of upload files whose file
    // is missing; the control's own members find that out before, and show a box.
    virtual std::string chooseFile(const std::string& defaultExtension,
                                   const std::string& startFolder);

    virtual void setMousePointer(MousePointer pointer) = 0;

    // Lets the program handle what is pending (its message queue, its input). Handlers may call the
    // control's members from here; StopTransfert, StopPvtData, StopNMEA and gpsDisconnect end what
    // is running.
    virtual void processEvents() = 0;

    // True once the program wants every running transfer to end, as on Ctrl-C or at process end.
    // Loops that have no time-out of their own ask this, and every wait does.
    virtual bool stopRequested() = 0;

    // For hosts whose patience ends (SystemHost::setPatience): a member of the control begins, or
    // ends; one may run inside another.
    virtual void memberBegins() {}
    virtual void memberEnds() {}
    // The receiver's line: a wait for bytes lasted so long in vain, or some came.
    virtual void waitedForBytes(double /*seconds*/) {}
    virtual void bytesCame() {}
    // True while stopRequested() answers true because nothing came, rather than at somebody's wish.
    [[nodiscard]] virtual bool patienceEnded() const { return false; }

    // Lets time pass without processing events; returns early when a stop is requested.
    virtual void pause(double seconds) = 0;

    // The clock that deadlines are computed on: seconds since local midnight, with fraction. It
    // need not wrap.
    virtual double secondsClock() = 0;

    // Local date and time: days since 30/12/1899 00:00:00, the fraction being the time of day.
    virtual double now() = 0;

    // The same in UTC, for the values beside the texts. The default asks the system's clock.
    virtual double utcNow();

    // A date value of now()'s kind as "dd/mm/yyyy hh:mm:ss".
    virtual std::string dateText(double date) = 0;

    // The separator that numbers are written with: '.' or ','.
    virtual char decimalSeparator() = 0;

    // What separates two lines inside a message box.
    virtual std::string lineBreak() = 0;

    // The user's documents folder, without a trailing separator. It may not exist.
    virtual std::string documentsFolder() = 0;

    // The folder that a file chooser starts in; asked together with it. Empty by default.
    virtual std::string applicationFolder();

    // The device behind a COM port number: "/dev/ttyS0", "\\.\COM3". Empty when the number has
    // none.
    virtual std::string portDevice(int number) = 0;

    // The mounted drives, in the system's order.
    virtual std::vector<Drive> drives() = 0;
};

}  // namespace marlune
