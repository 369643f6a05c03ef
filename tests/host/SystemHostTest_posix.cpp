#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <optional>

#include "host/MountedDrives_linux.h"
#include "host/MtpDrives_linux.h"
#include "host/UserFolders_posix.h"
#include "marlune/SystemHost.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;

// Sets an environment variable for the life of a test.
class Environment {
public:
    Environment(const char* name, const std::string& value) : name_(name) {
        if (const char* before = std::getenv(name)) {
            before_ = before;
        }
        ::setenv(name, value.c_str(), 1);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() {
        if (before_) {
            ::setenv(name_, before_->c_str(), 1);
        } else {
            ::unsetenv(name_);
        }
    }

private:
    const char* name_;
    std::optional<std::string> before_;
};

TEST(XdgDocumentsFolder, IsReadAsTheDesktopsWriteIt) {
    const std::vector<std::pair<const char*, const char*>> cases = {
        {"", ""},
        {"# XDG_DOCUMENTS_DIR=\"/no\"\nXDG_MUSIC_DIR=\"/music\"\n", ""},
        {"XDG_DOCUMENTS_DIR=\"$HOME/Mes documents\"\n", "/home/u/Mes documents"},
        {"  XDG_DOCUMENTS_DIR = \"/data/docs/\"", "/data/docs"},
        {"XDG_DOCUMENTS_DIR=\"$HOME/\"\n", "/home/u"},
        {"XDG_DOCUMENTS_DIR=\"$HOME/a \\\"b\\\"\"\n", "/home/u/a \"b\""},
        {"XDG_DOCUMENTS_DIR=\"/one\"\nXDG_DOCUMENTS_DIR=\"/two\"\n", "/two"},
        {"XDG_DOCUMENTS_DIR=\"relative\"\nXDG_DOCUMENTS_DIRS=\"/no\"\n", ""},
        {"XDG_DOCUMENTS_DIR=\"$HOMEWARD/no\"\nXDG_DOCUMENTS_DIR=/no\n", ""},
        {"XDG_DOCUMENTS_DIR=\"/cut\\", "/cut\\"},
    };
    for (const auto& [text, folder] : cases) {
        EXPECT_EQ(xdgDocumentsFolder(text, "/home/u"), folder) << text;
    }
}

TEST(SystemHostOnLinux, LooksForTheDocumentsFolderInTheUsersConfiguration) {
    const TempFolder home;
    const Environment itsHome("HOME", home.path().string());
    SystemHost host;
    {
        const Environment none("XDG_CONFIG_HOME", "");
        EXPECT_EQ(host.documentsFolder(), home.path() / "Documents");
        (void)home.write(".config/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"$HOME/Papiers\"\n");
        EXPECT_EQ(host.documentsFolder(), home.path() / "Papiers");
    }
    (void)home.write("elsewhere/user-dirs.dirs", "XDG_DOCUMENTS_DIR=\"/srv/docs\"\n");
    const Environment elsewhere("XDG_CONFIG_HOME", (home.path() / "elsewhere").string());
    EXPECT_EQ(host.documentsFolder(), "/srv/docs");
}

TEST(SystemHostOnLinux, NumbersThePorts) {
    SystemHost host;
    EXPECT_EQ(host.portDevice(1), "/dev/ttyS0");
    EXPECT_EQ(host.portDevice(32), "/dev/ttyS31");
    EXPECT_EQ(host.portDevice(33), "/dev/ttyUSB0");
    EXPECT_EQ(host.portDevice(40), "/dev/ttyUSB7");
    EXPECT_EQ(host.portDevice(0), "");
    EXPECT_EQ(host.portDevice(41), "");
}

TEST(SystemHostOnLinux, ALocaleThatIsNotInstalledHasAPoint) {
    const Environment locale("LC_ALL", "xx_XX.UTF-8");
    EXPECT_EQ(SystemHost().decimalSeparator(), '.');
}

TEST(SystemHostOnLinux, TellsTheLocalDate) {
    const auto daysUtc = [] {
        const std::chrono::duration<double> time =
            std::chrono::system_clock::now().time_since_epoch();
        return 25569.0 + time.count() / 86400.0;
    };
    const Environment zone("TZ", "XYZ-5:30");
    ::tzset();
    const double before = daysUtc();
    const double now = SystemHost().now();
    const double after = daysUtc();
    constexpr double kRounding = 1e-9;
    EXPECT_GE(now - 5.5 / 24, before - kRounding);
    EXPECT_LE(now - 5.5 / 24, after + kRounding);
}

TEST(MtpDrives, AreTheStoragesBelowTheRuntimeFolder) {
    const TempFolder folder;
    for (const char* storage :
         {"gvfs/mtp:host=Garmin_GPSMAP%2066/Internal Storage",
          "gvfs/mtp:host=Garmin_GPSMAP%2066/SD", "gvfs/mtp:host=Phone/Card",
          "gvfs/smb-share:server=garmin/x", "kio-fuse-AbCdEf/mtp/Edge by garmin/Storage",
          "kio-fuse-AbCdEf/sftp/garmin/x"}) {
        fs::create_directories(folder.path() / storage);
    }
    (void)folder.write("gvfs/mtp:host=Phone/file", "");
    std::string all;
    const Environment runtime("XDG_RUNTIME_DIR", folder.path().string());
    for (const Drive& drive : SystemHost().drives()) {
        if (drive.fileSystem == "mtp") {
            EXPECT_TRUE(drive.isReady);
            all += drive.volumeName + " " + fs::relative(drive.rootFolder, folder.path()).string() +
                   "\n";
        }
    }
    EXPECT_EQ(all,
              "GARMIN gvfs/mtp:host=Garmin_GPSMAP%2066/Internal Storage\n"
              "GARMIN gvfs/mtp:host=Garmin_GPSMAP%2066/SD\n"
              "Phone gvfs/mtp:host=Phone/Card\n"
              "GARMIN kio-fuse-AbCdEf/mtp/Edge by garmin/Storage\n");
    fs::create_directories(folder.path() / "m/Store/garmin");
    fs::create_directories(folder.path() / "m/Card");
    std::string mounted;
    for (const Drive& drive : drivesOfMtpMount(folder.path() / "m")) {
        mounted += drive.volumeName + " ";
    }
    EXPECT_EQ(mounted, "Card GARMIN ");
}

TEST(MountedDrives, AreTheFileSystemsOnBlockDevices) {
    const TempFolder folder;
    const fs::path mount = folder.path() / "My GPS";
    fs::create_directories(mount);
    fs::create_directories(folder.path() / "disk/by-label");
    fs::create_directories(folder.path() / "disk/by-uuid");
    fs::create_symlink("/dev/null", folder.path() / "disk/by-label/GARMIN\\x20GPS");
    fs::create_symlink("/dev/missing", folder.path() / "disk/by-label/BROKEN");
    fs::create_symlink("/dev/null", folder.path() / "disk/by-uuid/12AB-34CD");
    const std::string table = folder.write("mounts",
                                           "proc /proc proc rw 0 0\n"
                                           "/dev/zero / ext4 rw 0 0\n"
                                           "tmpfs /tmp tmpfs rw 0 0\n"
                                           "/dev/null " +
                                               folder.path().string() +
                                               "/My\\040GPS vfat rw 0 0\n"
                                               "/dev/missing " +
                                               folder.path().string() + "/gone vfat rw 0 0\n");
    const std::vector<Drive> drives = drivesOfMounts(table, folder.path() / "disk");
    ASSERT_EQ(drives.size(), 3U);
    EXPECT_EQ(drives[0].rootFolder, "/");
    EXPECT_EQ(drives[0].volumeName, "/");
    EXPECT_EQ(drives[1].rootFolder, mount.string());
    EXPECT_EQ(drives[1].driveLetter, "My GPS");
    EXPECT_EQ(drives[1].volumeName, "GARMIN GPS");
    EXPECT_EQ(drives[1].serialNumber, "12AB-34CD");
    EXPECT_EQ(drives[1].fileSystem, "vfat");
    EXPECT_TRUE(drives[1].isReady);
    EXPECT_EQ(drives[2].volumeName, "gone");
    EXPECT_FALSE(drives[2].isReady);
    EXPECT_TRUE(drivesOfMounts(folder.path() / "none", folder.path()).empty());
}

TEST(MountedDrives, LinkNamesAreDecoded) {
    EXPECT_EQ(decodeLinkName("MY\\x20\\x2fDISK"), "MY /DISK");
    EXPECT_EQ(decodeLinkName("\\x2\\xzz\\x"), "\\x2\\xzz\\x");
}

}  // namespace
}  // namespace marlune
