// The writer of the program's text files: "\n" becomes "\r\n" on disk, bytes given as bytes stay
// as they are, appending adds to the end, and failures (no folder, a full disk) are reported.

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "data/text_file.h"

namespace rm {
namespace {

namespace fs = std::filesystem;

std::string Bytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

class TextFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "rm_text_XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
    }
    void TearDown() override { fs::remove_all(folder); }
    fs::path folder;
};

TEST_F(TextFileTest, LineFeedsBecomeCrLfAndBytesStayAsTheyAre) {
    const fs::path path = folder / "a.txt";
    TextFile file;
    ASSERT_TRUE(file.Open(path.string()));
    file.Write("%s\n%d%%", "head", 42);           // "head" LF "42%"
    file.Put("\nsecond\n\n");                      // LF "second" LF LF
    file.PutBytes("\r\nkept\n");                   // as given
    file.Write("\n%s", std::string(600, 'x').c_str());  // longer than the writer's small buffer
    EXPECT_TRUE(file.Good());
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(Bytes(path), "head\r\n42%\r\nsecond\r\n\r\n\r\nkept\n\r\n" + std::string(600, 'x'));
    EXPECT_EQ(TextFileBytes("a\nb\r\n"), "a\r\nb\r\r\n");  // a CR before LF is text too
}

TEST_F(TextFileTest, CreateReplacesAndAppendAddsAtTheEnd) {
    const fs::path path = folder / "log";
    TextFile file;
    ASSERT_TRUE(file.Open(path.string(), TextFile::Mode::Append));  // made when missing
    file.Put("one\n");
    ASSERT_TRUE(file.Close());
    ASSERT_TRUE(file.Open(path.string(), TextFile::Mode::Append));
    file.Put("two\n");
    ASSERT_TRUE(file.Close());
    EXPECT_EQ(Bytes(path), "one\r\ntwo\r\n");
    ASSERT_TRUE(file.Open(path.string()));
    file.Put("new");
    ASSERT_TRUE(file.Close());
    EXPECT_EQ(Bytes(path), "new");
}

TEST_F(TextFileTest, FailuresAreReportedNotThrown) {
    TextFile missing;
    EXPECT_FALSE(missing.Open((folder / "no" / "x.txt").string()));
    EXPECT_EQ(missing.Error(), ENOENT);
    missing.Write("ignored %d\n", 1);
    EXPECT_FALSE(missing.Close());

    if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full to stand for a full disk";
    TextFile full;
    ASSERT_TRUE(full.Open("/dev/full"));
    full.Put(std::string(100000, 'x'));
    EXPECT_FALSE(full.Close());
    EXPECT_EQ(full.Error(), ENOSPC);
}

}  // namespace
}  // namespace rm
