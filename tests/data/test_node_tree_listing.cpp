#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

#include "data/test_data_file_support.h"
#include "data/tree_listing.h"

namespace rm {
namespace {

using test::TempFile;

TEST(TreeListingFormat, OneLinePerItemWithTypeAndIndentedChildren) {
    NodeRef root = NodeRef::MakeNew();
    NodeRef general = root.GetOrCreateChild("General");
    general.SetValue("Unit System", Variant(int16_t{1}));
    general.SetValue("Ratio", Variant(0.25));
    root.SetValue("Path", Variant("a\"b\\c\x01"));
    root.SetValue("", Variant(uint8_t{1}));
    root.Append("Gone", Variant::MakeNull());
    EXPECT_EQ(FormatTreeItems(root, 2),
              "  General [0 empty]\n"
              "    Unit System [2 i16] = 1\n"
              "    Ratio [5 double] = 0.25\n"
              "  Path [8 text] = \"a\\\"b\\\\c\\x01\"\n"
              "  \"\" [17 u8] = 1\n"
              "  Gone [1 null] = null\n");
}

TEST(TreeListingRead, PmkTreesAreNamedAndALastPartialTreeIsAccepted) {
    TempFile f;
    NodeRef settings = NodeRef::MakeNew();
    settings.SetValue("GpsPresent", Variant(1));
    NodeRef profile = NodeRef::MakeNew();
    profile.GetOrCreateChild("GPSData").SetValue("GGA", Variant("$GPGGA"));
    ASSERT_TRUE(settings.Save(f.get()));
    ASSERT_TRUE(profile.Save(f.get()));
    ASSERT_TRUE(profile.Save(f.get()));
    const uint8_t partial[] = {2, 0, 0, 0};  // a profile tree that never got its items
    std::fwrite(partial, 1, sizeof partial, f.get());
    std::rewind(f.get());

    TreeFileContents contents = ReadConsecutiveTrees(f.get(), true);
    ASSERT_TRUE(contents.readable) << contents.problem;
    ASSERT_EQ(contents.trees.size(), 4u);
    EXPECT_EQ(contents.trees[0].name, "Settings");
    EXPECT_EQ(contents.trees[1].name, "Prf1");
    EXPECT_EQ(contents.trees[3].name, "Prf3");
    EXPECT_FALSE(contents.trees[3].complete);
    const std::string listing = FormatTreeListing(contents);
    EXPECT_NE(listing.find("[Settings]\n  GpsPresent [3 i32] = 1\n[Prf1]\n  GPSData [0 empty]\n"), std::string::npos)
        << listing;
    EXPECT_NE(listing.find("[Prf3] (incomplete: the file ends inside this tree)\n  (no items)\n"), std::string::npos)
        << listing;
}

TEST(TreeListingRead, OtherFilesNeedEveryTreeWhole) {
    TempFile f;
    NodeRef root = NodeRef::MakeNew();
    root.SetValue("A", Variant(1));
    ASSERT_TRUE(root.Save(f.get()));
    ASSERT_TRUE(root.Save(f.get()));
    std::rewind(f.get());
    TreeFileContents two = ReadConsecutiveTrees(f.get(), false);
    ASSERT_TRUE(two.readable);
    ASSERT_EQ(two.trees.size(), 2u);
    EXPECT_EQ(two.trees[0].name, "Root");
    EXPECT_EQ(two.trees[1].name, "Tree 2");

    std::fseek(f.get(), 0, SEEK_END);
    std::fputc(7, f.get());  // a stray byte after the trees
    std::rewind(f.get());
    TreeFileContents damaged = ReadConsecutiveTrees(f.get(), false);
    EXPECT_FALSE(damaged.readable);
    EXPECT_NE(damaged.problem.find("byte 38"), std::string::npos) << damaged.problem;
}

TEST(TreeListingRead, EmptyMissingAndRandomFilesNeverCrash) {
    TempFile empty;
    EXPECT_FALSE(ReadConsecutiveTrees(empty.get(), false).readable);
    EXPECT_FALSE(ReadConsecutiveTrees(empty.get(), true).readable);
    EXPECT_FALSE(ReadTreeFileForListing("/nonexistent/AppSettings.conf").readable);

    std::mt19937 random(99);
    for (int round = 0; round < 300; ++round) {
        TempFile f;
        const int size = static_cast<int>(random() % 200);
        for (int i = 0; i < size; ++i) {
            // Small numbers are likelier to look like counts and lengths.
            std::fputc(random() % 3 == 0 ? static_cast<int>(random() % 256) : static_cast<int>(random() % 4), f.get());
        }
        std::rewind(f.get());
        TreeFileContents contents = ReadConsecutiveTrees(f.get(), round % 2 == 0);
        if (contents.readable) {
            EXPECT_FALSE(contents.trees.empty());
        }
        FormatTreeListing(contents);
    }
}

}  // namespace
}  // namespace rm
