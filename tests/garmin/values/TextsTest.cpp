#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "garmin/values/ByteAccess.h"
#include "garmin/values/Chaine.h"
#include "garmin/values/Fichier.h"
#include "garmin/values/LineFields.h"
#include "support/FakeHost.h"
#include "support/TempFolder.h"

namespace marlune {
namespace {

using testing::ElementsAre;

TEST(Chaine, ReplacesBlanksOnly) {
    EXPECT_EQ(Chaine::Remplace("A B C", ""), "ABC");
    EXPECT_EQ(Chaine::Remplace("A B\tC", "--"), "A--B\tC");
}

TEST(Chaine, ReversesPiecesOfCharacters) {
    EXPECT_EQ(Chaine::Inverse("ABCDEF", 2), "EFCDAB");
    EXPECT_EQ(Chaine::Inverse("ABCDE", 2), "ECDAB");
    EXPECT_EQ(Chaine::Inverse("ÉTÉ1", 1), "1ÉTÉ");
    EXPECT_EQ(Chaine::Inverse("ABC", 9), "ABC");
    EXPECT_EQ(Chaine::Inverse("ABC", 0), "");
}

TEST(Fichier, TellsWhatIsMissing) {
    const TempFolder folder;
    const std::string file = folder.write("été.txt", "");
    FakeHost host;
    EXPECT_TRUE(Fichier{file}.Existant(host));
    EXPECT_THAT(host.boxes, testing::IsEmpty());

    EXPECT_FALSE(Fichier{}.Existant(host));
    EXPECT_FALSE(Fichier{file + "x"}.Existant(host));
    EXPECT_FALSE(Fichier{folder.path().string()}.Existant(host)) << "a folder is no file";
    EXPECT_FALSE(Fichier{file + std::string("\0x", 2)}.Existant(host));
    const FakeHost::Box notFound{"Fichier non trouvé", BoxIcon::critical};
    EXPECT_THAT(host.boxes, ElementsAre(FakeHost::Box{"Fichier non renseigné", BoxIcon::critical},
                                        notFound, notFound, notFound));
}

TEST(LineFields, NeedsAllThatAreAsked) {
    EXPECT_THAT(lineFields<3>("W;a;;b;c"), ElementsAre("W", "a", ""));
    EXPECT_THAT(lineFields<2>("W;"), ElementsAre("W", ""));
    EXPECT_THROW(lineFields<2>("W"), RunTimeError);
}

TEST(ByteAccess, StaysInsideTheRecord) {
    const std::vector<std::uint8_t> data = {'A', ' ', 0, 'B'};
    EXPECT_THAT(untilZero(data, 0, 9), ElementsAre('A', ' '));
    EXPECT_THAT(untilZero(data, 3, 9), ElementsAre('B'));
    EXPECT_THAT(untilZero(data, 0, 1), ElementsAre('A'));
    EXPECT_THAT(untilZero(data, 7, 9), testing::IsEmpty());
    EXPECT_THROW((void)bytesAt(data, 2, 3), RunTimeError);
    EXPECT_THROW((void)bytesAt(data, 1, SIZE_MAX), RunTimeError) << "the sum would wrap";
    EXPECT_THROW((void)byteAt(data, 4), RunTimeError);
    std::vector<std::uint8_t> record(2);
    EXPECT_THROW(putText(record, 1, "AB"), RunTimeError);
    EXPECT_THAT(record, ElementsAre(0, 0)) << "nothing is written of what does not fit";
}

}  // namespace
}  // namespace marlune
