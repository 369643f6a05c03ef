// The Host of the running platform, for programs without a user interface of their own: boxes are
// printed to standard error, no events are pending, no file can be chosen. Derive from it and
// override what your program does better.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "marlune/Host.h"

namespace marlune {

class SystemHost : public Host {
public:
    // Binds a COM number to a device path, in place of the default: COM1 to COM32 are /dev/ttyS0 to
    // /dev/ttyS31, COM33 to COM40 are /dev/ttyUSB0 to /dev/ttyUSB7 on Linux.
    void bindPort(int number, std::string device);
    // Replaces the user's documents folder.
    void setDocumentsFolder(std::string folder);
    // Replaces the platform's decimal separator.
    void setDecimalSeparator(char separator);
    // Adds a folder that is to count as a mounted drive named after its last component; the first
    // one replaces the system's drives.
    void addDriveFolder(const std::string& folder);

    void messageBox(const std::string& text, BoxIcon icon) override;
    std::string chooseFile(const std::string& defaultExtension,
                           const std::string& startFolder) override;
    void setMousePointer(MousePointer pointer) override;
    void processEvents() override;
    bool stopRequested() override;
    void pause(double seconds) override;
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
    std::vector<Drive> driveFolders_;
    std::string documentsFolder_;
    char decimalSeparator_ = 0;  // 0: the platform's
};

}  // namespace marlune
