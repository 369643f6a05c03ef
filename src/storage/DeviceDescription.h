// The description file of a mass-storage unit, GARMIN/Garmindevice.xml on its drive:
//
//   <Device>
//     <Model><SoftwareVersion>280</SoftwareVersion><Description>eTrex 30</Description></Model>
//     <Id>3816270594</Id>
//     <MassStorageMode>
//       <DataType>
//         <Name>GPSData</Name>
//         <File>
//           <Location><Path>Garmin/GPX</Path>...</Location>
//           <TransferDirection>InputToUnit</TransferDirection>
//         </File>
//         ...
//
// The version is in hundredths; paths are relative to the drive's root. Namespaces are ignored.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace marlune {

struct DeviceDescription {
    std::string id;
    std::string description;
    std::string softwareVersion;             // "2.80"; empty when the file names none
    std::string inputFolder;                 // GPX files for the unit; empty when it takes none
    std::vector<std::string> outputFolders;  // GPX files from the unit, in the file's order
};

// Throws GpxParseError for what is no XML document.
DeviceDescription readDeviceDescription(std::string_view xml);

}  // namespace marlune
