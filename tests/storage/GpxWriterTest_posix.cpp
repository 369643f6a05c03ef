// What the writer does to the special files that Linux has.
#include <gtest/gtest.h>

#include <filesystem>

#include "ErrorOf.h"
#include "marlune/Gpx.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;

TEST(GpxWriterOnLinux, FollowsALinkAndWritesIntoADevice) {
    const TempFolder folder;
    const fs::path link = folder.path() / "out.gpx";
    fs::create_symlink("real.gpx", link);
    GpxWriter().save(link);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_NE(folder.read("real.gpx").find("<gpx"), std::string::npos);
    fs::create_symlink("/dev/null", folder.path() / "null.gpx");
    GpxWriter().save(folder.path() / "null.gpx");
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(GpxWriterOnLinux, TellsTheSystemsError) {
    const TempFolder folder;
    const auto codeOf = [](const fs::path& target) {
        return errorOf([&] { GpxWriter().save(target); });
    };
    EXPECT_EQ(codeOf(folder.path()), std::errc::is_a_directory);
    EXPECT_EQ(codeOf("/dev/full"), std::errc::no_space_on_device);
}

}  // namespace
}  // namespace marlune
