// What other programs say about the files: xmllint and schemas.
#include <gtest/gtest.h>

#include <cstdlib>

#include "SampleRecords.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

TEST(RecordFilesOutside, GpxAndKmlAreValid) {
    const TempFolder folder;
    FileHead head;
    head.source = "eTrex Software Version 2.14";
    head.time = 1790000000;
    saveRecords(sampleRecords(), FileFormat::gpx, folder.path() / "all.gpx", head);
    saveRecords({}, FileFormat::gpx, folder.path() / "none.gpx", {});
    saveRecords(sampleRecords(), FileFormat::kml, folder.path() / "all.kml", head);
    saveRecords({}, FileFormat::kml, folder.path() / "none.kml", {});
    const std::string lint = "cd " + folder.path().string() + " && xmllint --noout ";
    EXPECT_EQ(
        std::system((lint + "--schema " MARLUNE_SCHEMAS "/gpx-1.1.xsd all.gpx none.gpx").c_str()),
        0);
    EXPECT_EQ(
        std::system((lint + "--schema " MARLUNE_SCHEMAS "/kml-2.2.xsd all.kml none.kml").c_str()),
        0);
}

}  // namespace
}  // namespace marlune
