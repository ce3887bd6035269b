// HTML laid out on PDF pages without a display: the file is a PDF of the chosen paper with the
// expected number of pages, the text is in it, and a path that cannot be written is an error.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "report_pdf/report_pdf.h"

namespace rm {
namespace {

std::string ReadText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

class ReportPdf : public ::testing::Test {
protected:
    void SetUp() override {
        folder = std::filesystem::temp_directory_path() /
                 ("report_pdf_" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + "_" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(folder);
    }
    void TearDown() override { std::filesystem::remove_all(folder); }
    std::string File(const std::string& name) const { return (folder / name).string(); }
    std::filesystem::path folder;
};

TEST_F(ReportPdf, ShortReportIsOneA4Page) {
    const std::string path = File("short.pdf");
    const PdfResult r = WriteHtmlPdf("<h1>Discharge Report</h1><p>Station Millbrook at Weir Lane</p>", path);
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_EQ(r.pages, 1);
    const std::string bytes = ReadText(path);
    ASSERT_GE(bytes.size(), 5u);
    EXPECT_EQ(bytes.substr(0, 5), "%PDF-");
    // A4 is 595 x 842 points.
    EXPECT_NE(bytes.find("/MediaBox [0 0 595"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(path + ".part"));
    if (std::system("command -v pdftotext > /dev/null 2>&1") != 0) GTEST_SKIP() << "pdftotext is not installed";
    ASSERT_EQ(std::system(("pdftotext '" + path + "' '" + File("short.txt") + "'").c_str()), 0);
    EXPECT_NE(ReadText(File("short.txt")).find("Millbrook at Weir Lane"), std::string::npos);
}

TEST_F(ReportPdf, LongReportBreaksIntoLetterPages) {
    std::string html = "<table border=\"1\">";
    for (int i = 0; i < 300; ++i) html += "<tr><td>Transect " + std::to_string(i) + "</td><td>12.5</td></tr>";
    html += "</table>";
    PdfOptions options;
    options.paper = PaperSize::Letter;
    const std::string path = File("long.pdf");
    const PdfResult r = WriteHtmlPdf(html, path, options);
    ASSERT_TRUE(r.ok) << r.error;
    EXPECT_GT(r.pages, 2);  // 300 rows of about 5 mm do not fit on one or two pages
    const std::string bytes = ReadText(path);
    // Letter is 612 x 792 points.
    EXPECT_NE(bytes.find("/MediaBox [0 0 612"), std::string::npos);
    size_t pages = 0;
    for (size_t at = bytes.find("/Type /Page\n"); at != std::string::npos; at = bytes.find("/Type /Page\n", at + 1))
        ++pages;
    EXPECT_EQ(static_cast<int>(pages), r.pages);
}

TEST_F(ReportPdf, UnwritablePathIsAnErrorAndWritesNothing) {
    const std::string path = File("no/such/folder/r.pdf");
    const PdfResult r = WriteHtmlPdf("<p>x</p>", path);
    EXPECT_FALSE(r.ok);
    EXPECT_NE(r.error.find(path), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace rm
