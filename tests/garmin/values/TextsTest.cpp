#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "garmin/values/Chaine.h"
#include "garmin/values/Fichier.h"
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

}  // namespace
}  // namespace marlune
