// The Host of the running platform, for programs without a user interface of their own: boxes are
// printed to standard error, no events are pending, no file can be chosen, nobody asks to stop.
// Derive from it and override what your program does better.
#pragma once

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "marlune/Export.h"
#include "marlune/Host.h"

namespace marlune {

class MARLUNE_EXPORT SystemHost : public Host {
public:
    SystemHost();

    // Binds a COM number to a device path, in place of the default: COM1 to COM32 are /dev/ttyS0 to
    // /dev/ttyS31, COM33 to COM40 are /dev/ttyUSB0 to /dev/ttyUSB7 on Linux. Any number may be
    // bound.
    void bindPort(int number, std::string device);
    // Replaces the user's documents folder: on Linux the folder of that name in the user's
    // user-dirs.dirs, else Documents in the home folder.
    void setDocumentsFolder(std::string folder);
    // Replaces the separator of the user's locale. It is '.' or ','.
    void setDecimalSeparator(char separator);
    // Adds a folder that is to count as a mounted drive named after its last component; the first
    // one replaces the system's drives. It need not exist yet: a drive is ready once it does.
    void addDriveFolder(std::string folder);

    // How many seconds a member may wait for the receiver in vain, from one byte to the next; 0, as
    // at first, for as long as the protocols do, and that is for ever when a device stops in the
    // middle of a frame. Afterwards stopRequested() answers true until the member has ended, so
    // that it ends as the procedures do at a stop; reports call that interrupted. Time that the
    // program takes in handlers, and time in which bytes are sent, does not count. Single reads of
    // a Garmin unit on a serial line last 1.1 s, and its handshake waits for one that is silent:
    // less than 2 seconds cuts it short.
    void setPatience(double seconds);

    void messageBox(const std::string& text, BoxIcon icon) override;
    std::string chooseFile(const std::string& defaultExtension,
                           const std::string& startFolder) override;
    void setMousePointer(MousePointer pointer) override;
    void processEvents() override;
    // True once the patience has ended. Whoever overrides it asks it as well.
    bool stopRequested() override;
    void memberBegins() override;
    void memberEnds() override;
    void waitedForBytes(double seconds) override;
    void bytesCame() override;
    [[nodiscard]] bool patienceEnded() const override { return patienceEnded_; }
    // Asks stopRequested() every 50 ms.
    void pause(double seconds) override;
    // Counts on from the local time at construction, whatever happens to the system's date.
    double secondsClock() override;
    double now() override;
    std::string dateText(double date) override;
    char decimalSeparator() override;
    std::string lineBreak() override;
    std::string documentsFolder() override;
    std::string applicationFolder() override;
    std::string portDevice(int number) override;
    std::vector<Drive> drives() override;

private:
    std::map<int, std::string> ports_;
    std::vector<std::string> driveFolders_;
    std::string documentsFolder_;
    char decimalSeparator_ = 0;  // 0: the locale was not asked yet
    std::chrono::steady_clock::time_point clockStart_;
    double clockStartSeconds_;
    double patience_ = 0;
    double silence_ = 0;  // seconds waited since the last byte
    int members_ = 0;     // that run, one inside the other
    bool patienceEnded_ = false;
};

}  // namespace marlune
