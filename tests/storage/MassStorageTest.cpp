// A unit that is a drive: found, described, read and written.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "base/FilePath.h"
#include "base/VersionText.h"
#include "garmin/UploadFiles.h"
#include "storage/DeviceDescription.h"
#include "storage/DriveFolder.h"
#include "storage/StorageTransfers.h"
#include "storage/StorageUnit.h"
#include "support/Dialogue.h"
#include "support/TracedServices.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::string described(const std::string& input, const std::string& output) {
    const auto file = [](const std::string& path, const std::string& direction) {
        return "<File><Location><Path>" + path +
               "</Path><FileExtension>GPX</FileExtension></Location><TransferDirection>" +
               direction + "</TransferDirection></File>";
    };
    return "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\" ?>\n"
           "<Device xmlns=\"http://www.garmin.com/xmlschemas/GarminDevice/v2\">"
           "<Model><PartNumber>006-B1305-00</PartNumber><SoftwareVersion>280</SoftwareVersion>"
           "<Description>eTrex \xC3\x89t\xC3\xA9</Description></Model><Id>3816270594</Id>"
           "<MassStorageMode>"
           "<DataType><Name>Maps</Name>" +
           file("Garmin/Maps", "InputToUnit") +
           "</DataType>"
           "<DataType><Name>GPSData</Name>" +
           file(output, "OutputFromUnit") + file(input, "InputToUnit") +
           "</DataType></MassStorageMode></Device>";
}

TEST(DeviceDescription, ReadsWhatIdentifiesTheUnitAndItsFolders) {
    const DeviceDescription device = readDeviceDescription(described("In/GPX", "Out/GPX"));
    EXPECT_EQ(device.id, "3816270594");
    EXPECT_EQ(device.description, "eTrex Été");
    EXPECT_EQ(device.softwareVersion, "2.80");
    EXPECT_EQ(device.inputFolder, "In/GPX") << "not the folder of the maps";
    EXPECT_THAT(device.outputFolders, ElementsAre("Out/GPX"));
}

TEST(DeviceDescription, IgnoresNamespaces) {
    const DeviceDescription device = readDeviceDescription(
        "<g:Device xmlns:g='urn:x'><g:SoftwareVersion>305</g:SoftwareVersion>"
        "<g:MassStorageMode><g:DataType><g:Name>GPSData</g:Name>"
        "<g:File><g:Location><g:Path>A</g:Path></g:Location><g:TransferDirection>"
        "OutputFromUnit</g:TransferDirection></g:File></g:DataType></g:MassStorageMode>"
        "</g:Device>");
    EXPECT_EQ(device.softwareVersion, "3.05");
    EXPECT_THAT(device.outputFolders, ElementsAre("A"));
    EXPECT_EQ(device.inputFolder + device.id, "");
}

TEST(DeviceDescription, SurvivesDepth) {
    std::string open;
    std::string close;
    for (int i = 0; i < 100000; ++i) {
        open += "<d>";
        close += "</d>";
    }
    EXPECT_EQ(readDeviceDescription(open + "<Id>1</Id>" + close).id, "1");
}

TEST(DriveFolder, FindsNamesInAnyCaseAndRefusesToLeave) {
    const TempFolder folder;
    const fs::path root = folder.path() / "drive";
    fs::create_directories(root / "Garmin/GPX");
    fs::create_directories(folder.path() / "elsewhere");
    for (const char* name : {"GARMIN/gpx", "garmin\\GPX\\", "./Garmin//GPX"}) {
        EXPECT_TRUE(fs::equivalent(insideDrive(root, name).value(), root / "Garmin/GPX")) << name;
    }
    EXPECT_EQ(insideDrive(root, "Garmin/New"), root / "Garmin" / "New");
    EXPECT_EQ(insideDrive(root, ""), root);
    for (const char* name : {"..", "Garmin/../../elsewhere", "Garmin\\..\\..", "/etc", "\\etc",
                             "C:\\Windows", "Garmin/C:x"}) {
        EXPECT_FALSE(insideDrive(root, name)) << name;
    }
    std::error_code unsupported;
    fs::create_directory_symlink(folder.path() / "elsewhere", root / "Link", unsupported);
    if (!unsupported) {
        EXPECT_FALSE(insideDrive(root, "link/file.gpx"));
    }
}

class MassStorageTest : public testing::Test {
protected:
    MassStorageTest() {
        write("Garmin/GarminDevice.xml", described("Garmin/In", "garmin/out"));
        fs::create_directories(root() / "Garmin/In");
        fs::create_directories(root() / "Garmin/Out");
        host_.driveList = {drive("Untitled"), drive("Garmin")};
    }

    fs::path root() { return unitFolder_.path() / "GARMIN"; }
    void write(const std::string& name, const std::string& content) {
        (void)unitFolder_.write("GARMIN/" + name, content);
    }
    std::string read(const std::string& name) { return unitFolder_.read("GARMIN/" + name); }

    Drive drive(const std::string& volume) {
        Drive drive;
        drive.isReady = true;
        drive.volumeName = volume;
        drive.rootFolder = pathText(root());
        return drive;
    }
    StorageTransfers connected() {
        EXPECT_TRUE(unit_.find(services_));
        EXPECT_TRUE(unit_.identify(services_, state_));
        return {services_, unit_, state_};
    }
    // The names in the input folder, and what they hold.
    std::vector<std::string> inputFiles() {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(root() / "Garmin/In")) {
            names.push_back(pathText(entry.path().filename()));
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    std::vector<Waypoint> waypoints() {
        const std::string path = unitFolder_.write(
            "host/mes points.txt", "W;PT1;45;1.5;note;100;18;0\r\nW;PT2;46;2;;0;18;0\r\n");
        std::vector<Waypoint> waypoints;
        EXPECT_TRUE(
            readWaypointFile(host_, path, storageUploadFormat("GRM_USB_GPX", "."), waypoints));
        return waypoints;
    }

    TempFolder unitFolder_;
    std::vector<std::string> told_;
    RecordedEvents events_{[this](const std::string& text) { told_.push_back(text); }};
    TracedServices traced_{events_};
    FakeHost& host_ = traced_.host;
    Services& services_ = traced_.services;
    ConnectionState state_;
    StorageUnit unit_;
};

const std::string kGpx = "<?xml version='1.0'?><gpx version='1.1' creator='x'>";

TEST_F(MassStorageTest, TakesTheDriveOfThatNameAndTracesWhatItWalked) {
    connected();
    EXPECT_EQ(identText(state_), "Marlune Version " + versionText() +
                                     " -  GPSId: 3816270594 Version: 2.80 - eTrex Été");
    EXPECT_EQ(storageProtocols(state_), "Donnees au format GPX - eTrex Été");
    const std::string trace = host_.traceText();
    for (const char* label :
         {"DriveLetter     : ", "DriveType       : ", "FileSystem      : ", "AvailableSpace  : ",
          "FreeSpace       : ", "IsReady         : ", "Path            : ", "RootFolder      : ",
          "SerialNumber    : ", "ShareName       : ", "VolumeName      : ", "TotalSize       : "}) {
        const auto first = trace.find(label);
        ASSERT_NE(first, std::string::npos) << label;
        EXPECT_NE(trace.find(label, first + 1), std::string::npos) << "for the other drive too";
    }
}

TEST_F(MassStorageTest, IsChosenByNameReadinessAndDescription) {
    const auto found = [&](std::vector<Drive> drives) {
        host_.driveList = std::move(drives);
        return unit_.find(services_);
    };
    Drive absent = drive("GARMIN");
    absent.isReady = false;
    Drive unlabelled = drive("");
    EXPECT_FALSE(found({}));
    EXPECT_FALSE(found({absent, drive("GARMIN2"), drive("Data")}));
    EXPECT_TRUE(found({unlabelled})) << "mounted as GARMIN";
    unlabelled.rootFolder += "/";
    EXPECT_TRUE(found({unlabelled}));

    // A card of the same name, without a description.
    Drive card = drive("GARMIN");
    card.rootFolder = pathText(unitFolder_.path());
    EXPECT_TRUE(found({card, drive("garmin")}));
    EXPECT_EQ(unit_.root(), root());
    EXPECT_TRUE(found({card}));
    EXPECT_FALSE(unit_.identify(services_, state_));
    EXPECT_THAT(host_.traceText(), HasSubstr("Garmindevice.xml - "));
}

TEST_F(MassStorageTest, TracesADescriptionThatCannotBeParsed) {
    write("Garmin/GarminDevice.xml", "<Device>\n  <Id>1</Device>");
    EXPECT_TRUE(unit_.find(services_));
    EXPECT_FALSE(unit_.identify(services_, state_));
    EXPECT_FALSE(state_.connected);
    const std::string trace = host_.traceText();
    for (const char* label : {"Erreur: ", "source:<Id>1</Device>", "motid: ", "ligne: 2",
                              "position: ", "Position dans le fichier: "}) {
        EXPECT_THAT(trace, HasSubstr(label));
    }
}

TEST_F(MassStorageTest, DownloadsEveryFileOfTheOutputFolderInNameOrder) {
    write("Garmin/Out/b.gpx", kGpx +
                                  "<wpt lat='2' lon='2'><name>B</name></wpt>"
                                  "<rte><name>Two</name><rtept lat='5' lon='5'><name>P</name>"
                                  "</rtept></rte></gpx>");
    write("Garmin/Out/a.GPX", kGpx +
                                  "<wpt lat='1' lon='1'><name>A</name></wpt><rte/>"
                                  "<trk><name>Walk</name><trkseg><trkpt lat='3' lon='3'/>"
                                  "</trkseg></trk></gpx>");
    write("Garmin/Out/broken.gpx", "<gpx>\n<wpt");
    write("Garmin/Out/note.txt", "no GPX");
    write("Garmin/In/in.gpx", kGpx + "<wpt lat='9' lon='9'/></gpx>");
    StorageTransfers transfers = connected();
    EXPECT_TRUE(transfers.getWaypts());
    EXPECT_THAT(
        told_,
        ElementsAre(
            "StartDownload|W|2|---- W;id;lat;lon;comment;altitude;symbole;display opt. ------",
            "WayptData|1|W;A;1;1;;0;18;0|D", "WayptData|2|W;B;2;2;;0;18;0|D", "EndDownload|W"));
    EXPECT_THAT(host_.traceText(), HasSubstr("broken.gpx"));
    told_.clear();
    EXPECT_TRUE(transfers.GetRoutes());
    EXPECT_THAT(told_, ElementsAre("StartDownload|R|3|-------- Routes --------",
                                   "RouteHeader|1|R;1;ROUTE 1|D", "RouteHeader|2|R;2;Two|D",
                                   "RouteData|3|W;P;5;5;;0;18;0|D", "EndDownload|R"));
    told_.clear();
    EXPECT_TRUE(transfers.getTracks());
    EXPECT_THAT(told_, ElementsAre("StartDownload|T|2|--- T;lat;lon;heure;altitude;debut -----",
                                   "TrackHeader|1|N;Walk|D", "TrackData|2|T;3;3;0;0;-1|D",
                                   "EndDownload|T"));
    EXPECT_THAT(host_.boxes, IsEmpty());
}

TEST_F(MassStorageTest, ReadsWhatTheUnitIsWritingAndAFileOnce) {
    const std::string one = described("Garmin/In", "Garmin/Out");
    const std::string more =
        "<File><Location><Path>garmin/OUT</Path></Location>"
        "<TransferDirection>OutputFromUnit</TransferDirection></File>"
        "<File><Location><Path>Garmin/Second</Path></Location>"
        "<TransferDirection>OutputFromUnit</TransferDirection></File></DataType></MassStorageMode>";
    const std::string end = "</DataType></MassStorageMode>";
    write("Garmin/GarminDevice.xml", std::string(one).replace(one.find(end), end.size(), more));
    write("Garmin/Out/z.gpx", kGpx +
                                  "<wpt lat='1' lon='1.00000049'><name>Z</name>"
                                  "<ele>0</ele><sym>Bank</sym></wpt></gpx>");
    write("Garmin/Out/CURRENT/c.gpx", kGpx + "<wpt lat='2' lon='2'><name>C</name></wpt></gpx>");
    write("Garmin/Second/a.gpx", kGpx + "<wpt lat='3' lon='3'><name>A</name></wpt></gpx>");
    EXPECT_TRUE(connected().getWaypts());
    ASSERT_EQ(told_.size(), 5U);
    EXPECT_EQ(told_[1], "WayptData|1|W;Z;1;1;;0;18;0|D");
    EXPECT_EQ(told_[2], "WayptData|2|W;C;2;2;;0;18;0|D");
    EXPECT_EQ(told_[3], "WayptData|3|W;A;3;3;;0;18;0|D");
    const WaypointRecord& first = services_.records.waypoints.at(0);
    EXPECT_EQ(first.longitude, 1.00000049);
    EXPECT_EQ(first.altitude, 0.0F);
    EXPECT_EQ(first.symbol, 6);
}

TEST_F(MassStorageTest, SendsWhatTheFileSaidUnrounded) {
    const std::string path =
        unitFolder_.write("host/a.txt", "W;PT1;45.12345678;1.5;;152.6;6;1\r\n");
    std::vector<Waypoint> waypoints;
    ASSERT_TRUE(readWaypointFile(host_, path, storageUploadFormat("GRM_USB_GPX", "."), waypoints));
    Drive mounted = drive("GARMIN");
    mounted.fileSystem = "mtp";
    host_.driveList = {mounted};
    write("Garmin/In/a.gpx", "old");
    EXPECT_TRUE(connected().SendWaypts({.records = waypoints, .path = "a.txt"}));
    EXPECT_EQ(told_.at(1), "WayptData|1|W;PT1;45.123457;1.5;;153;6;1|U");
    const std::string gpx = read("Garmin/In/a.gpx");
    EXPECT_THAT(gpx, HasSubstr("lat=\"45.12345678\""));
    EXPECT_THAT(gpx, HasSubstr("<ele>152.6</ele>"));
    EXPECT_THAT(gpx, HasSubstr("<sym>Bank</sym>"));
}

TEST_F(MassStorageTest, TellsThatNothingIsThere) {
    StorageTransfers transfers = connected();
    EXPECT_FALSE(transfers.getWaypts());
    EXPECT_FALSE(transfers.getTracks());
    EXPECT_FALSE(transfers.GetRoutes());
    fs::remove(root() / "Garmin/Out");
    EXPECT_FALSE(transfers.getWaypts());
    EXPECT_THAT(host_.boxTexts(), ElementsAre("information: Aucun Waypoint dans ce Gps",
                                              "information: Aucune trace dans ce GPS",
                                              "information: Aucune route dans ce Gps",
                                              "information: Aucun Waypoint dans ce Gps"));
    EXPECT_THAT(told_, IsEmpty());
}

TEST_F(MassStorageTest, ReadsNothingOutsideTheDrive) {
    (void)unitFolder_.write("outside/x.gpx", kGpx + "<wpt lat='1' lon='1'/></gpx>");
    for (const std::string& folder :
         {std::string("../outside"), pathText(unitFolder_.path() / "outside")}) {
        write("Garmin/GarminDevice.xml", described(folder, folder));
        StorageTransfers transfers = connected();
        EXPECT_FALSE(transfers.getWaypts());
        EXPECT_FALSE(transfers.SendWaypts({.records = waypoints(), .path = "x.txt"}));
        EXPECT_THAT(host_.traceText(), HasSubstr(folder));
        EXPECT_THAT(told_, IsEmpty());
    }
}

TEST_F(MassStorageTest, FollowsNoLinkOutOfTheDrive) {
    const std::string outside =
        unitFolder_.write("outside/x.gpx", kGpx + "<wpt lat='1' lon='1'/></gpx>");
    std::error_code unsupported;
    fs::create_symlink(outside, root() / "Garmin/Out/x.gpx", unsupported);
    EXPECT_FALSE(connected().getWaypts());
    EXPECT_THAT(told_, IsEmpty());
}

TEST_F(MassStorageTest, StopsInTheMiddleWhenTheHostDisconnectsOrWantsTheEnd) {
    write("Garmin/Out/a.gpx", kGpx + "<wpt lat='1' lon='1'/><wpt lat='2' lon='2'/></gpx>");
    StorageTransfers transfers = connected();
    events_.when("WayptData", 1, [&] { state_.connected = false; });
    EXPECT_TRUE(transfers.getWaypts());
    EXPECT_EQ(told_.size(), 3U) << "start, one record, end";
    told_.clear();
    state_.connected = true;
    events_.when("WayptData", 1, [&] { host_.stop = true; });
    EXPECT_FALSE(transfers.SendWaypts({.records = waypoints(), .path = "x.txt"}));
    EXPECT_EQ(told_.size(), 3U);
    EXPECT_THAT(inputFiles(), IsEmpty()) << "half an upload is none";
}

TEST_F(MassStorageTest, UploadsAFileNamedAfterTheHosts) {
    StorageTransfers transfers = connected();
    write("Garmin/In/MES POINTS.gpx", "old");
    EXPECT_TRUE(transfers.SendWaypts({.records = waypoints(), .path = "/home/moi/mes points.txt"}));
    EXPECT_THAT(told_,
                ElementsAre("StartUpload|W|2|Waypoints", "WayptData|1|W;PT1;45;1.5;note;100;18;0|U",
                            "WayptData|2|W;PT2;46;2;;0;18;0|U", "EndUpload|W"));
    EXPECT_THAT(inputFiles(), ElementsAre("MES POINTS.gpx")) << "one name in any case";
    const std::string gpx = read("Garmin/In/MES POINTS.gpx");
    EXPECT_THAT(gpx, HasSubstr("<gpx version=\"1.1\""));
    EXPECT_THAT(gpx, HasSubstr("<name>PT1</name>"));

    EXPECT_TRUE(transfers.SendWaypts({.records = waypoints(), .path = "C:\\a?b:*. .txt"}));
    EXPECT_THAT(inputFiles(), testing::Contains(testing::EndsWith("a_b__.gpx")));
}

TEST_F(MassStorageTest, UploadsTracksWithTheirHeadersAndRoutesWithTheirPoints) {
    StorageTransfers transfers = connected();
    const UploadFormat format = storageUploadFormat("GRM_USB_GPX", ".");
    const std::string path = unitFolder_.write(
        "host/a.txt", "N;Walk\r\nT;45;1;32874.5;100;0\r\nR;1;Tour\r\nW;PT1;45;1;;0;18;0\r\n");
    std::vector<TrackItem> items;
    ASSERT_TRUE(readTrackFile(host_, path, format, items));
    std::vector<Route> routes;
    ASSERT_TRUE(readRouteFile(host_, path, format, routes));
    EXPECT_TRUE(transfers.SendTraces({.records = items, .path = "t.txt"}));
    EXPECT_THAT(read("Garmin/In/t.gpx"), HasSubstr("<name>Walk</name>"));
    EXPECT_THAT(read("Garmin/In/t.gpx"), HasSubstr("1990-01-01T12:00:00Z"));
    EXPECT_TRUE(transfers.SendRoutes({.records = routes, .path = "r.txt"}));
    EXPECT_THAT(read("Garmin/In/r.gpx"), HasSubstr("<rtept lat=\"45\" lon=\"1\">"));
    EXPECT_EQ(told_.size(), 8U);
}

TEST_F(MassStorageTest, AFailedUploadTellsWhyAndLeavesWhatWasThere) {
    StorageTransfers transfers = connected();
    write("Garmin/In/x.gpx/kept", "a folder stands where the file should");
    EXPECT_FALSE(transfers.SendWaypts({.records = waypoints(), .path = "x.txt"}));
    EXPECT_THAT(inputFiles(), ElementsAre("x.gpx"));
    ASSERT_EQ(host_.boxes.size(), 1U);
    EXPECT_EQ(host_.boxes[0].icon, BoxIcon::critical);
    EXPECT_NE(host_.boxes[0].text, "");
    EXPECT_EQ(told_.back(), "EndUpload|W");

    told_.clear();
    fs::remove_all(root() / "Garmin/In");
    EXPECT_FALSE(transfers.SendWaypts({.records = waypoints(), .path = "x.txt"}));
    EXPECT_EQ(host_.boxes.size(), 2U);
    EXPECT_THAT(told_, IsEmpty()) << "no folder: nothing starts";
    EXPECT_FALSE(fs::exists(root() / "Garmin/In"));
}

}  // namespace
}  // namespace marlune
