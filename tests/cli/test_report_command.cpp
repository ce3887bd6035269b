// `ripplemark-cli report` on recordings of the virtual river: the HTML through the shipped
// template, the PDF, the station fields, the mismatch note, and the failures that must leave
// earlier files alone.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "cli/report_template_path.h"
#include "cli/sim_recording.h"

namespace rm::test {
namespace {

std::string ReadText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

size_t Count(const std::string& text, const std::string& what) {
    size_t n = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
    return n;
}

bool HavePdfToText() { return std::system("command -v pdftotext > /dev/null 2>&1") == 0; }

class ReportCommand : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        dir = new TempDir;
        first = new SimRecording(RecordRiver(*dir, "MILL01", {"--profiles", "40", "--serial", "K0815"}));
        second = new SimRecording(
            RecordRiver(*dir, "MILL02", {"--profiles", "40", "--serial", "K0815", "--start", "2024-06-01 10:30:00"}));
    }
    static void TearDownTestSuite() {
        delete first;
        delete second;
        delete dir;
    }
    static TempDir* dir;
    static SimRecording* first;
    static SimRecording* second;
};
TempDir* ReportCommand::dir = nullptr;
SimRecording* ReportCommand::first = nullptr;
SimRecording* ReportCommand::second = nullptr;

TEST_F(ReportCommand, WritesTheShippedTemplateWithBothTransectsAndTheStation) {
    const std::string html = dir->File("report.html");
    const std::string station = dir->File("mill.dms");
    std::ofstream(station) << "StationName=Old name\nStationNumber=04-2231\nParty=A. Hale\n";
    const ProcessResult r = RunCli({"report", second->path, first->path, "-o", html, "--station", station,
                                    "--station-name", "Millbrook at Weir Lane", "--report-date", "2024-06-01 12:00"});
    ASSERT_EQ(r.exitStatus, 0) << r.Describe();
    EXPECT_EQ(r.err, "");  // same instrument and settings: nothing to report as differing
    const std::string text = ReadText(html);
    EXPECT_NE(text.find("<title>Discharge Report - Millbrook at Weir Lane</title>"), std::string::npos);
    EXPECT_NE(text.find("04-2231"), std::string::npos);
    EXPECT_NE(text.find("2024-06-01 12:00"), std::string::npos);
    EXPECT_EQ(text.find("{{"), std::string::npos);
    // Sorted by start time of day: MILL01 (10:00) before MILL02 (10:30), in each of three tables.
    EXPECT_EQ(Count(text, ">MILL01<"), 3u);
    EXPECT_EQ(Count(text, ">MILL02<"), 3u);
    EXPECT_LT(text.find(">MILL01<"), text.find(">MILL02<"));
    EXPECT_NE(text.find(">10:00<"), std::string::npos);
    EXPECT_NE(text.find(">10:30<"), std::string::npos);
    EXPECT_NE(text.find(">K0815<"), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(html + ".part"));
}

TEST_F(ReportCommand, PdfHasPagesAndTheStationName) {
    const std::string pdf = dir->File("report.pdf");
    const ProcessResult r = RunCli({"report", first->path, second->path, "-o", dir->File("p.html"), "--pdf", pdf,
                                    "--station-name", "Millbrook at Weir Lane", "--paper", "letter"});
    if (r.exitStatus == 64 && r.err.find("without Qt") != std::string::npos) GTEST_SKIP() << "built without Qt";
    ASSERT_EQ(r.exitStatus, 0) << r.Describe();
    const std::string bytes = ReadText(pdf);
    ASSERT_GE(bytes.size(), 5u);
    EXPECT_EQ(bytes.substr(0, 5), "%PDF-");
    EXPECT_GE(Count(bytes, "/Type /Page\n") + Count(bytes, "/Type /Page\r") + Count(bytes, "/Type /Page "), 1u);
    EXPECT_NE(r.out.find("report.pdf"), std::string::npos);
    if (!HavePdfToText()) GTEST_SKIP() << "pdftotext is not installed: the text check is skipped";
    const std::string txt = dir->File("report.txt");
    ASSERT_EQ(std::system(("pdftotext -layout '" + pdf + "' '" + txt + "'").c_str()), 0);
    const std::string text = ReadText(txt);
    EXPECT_NE(text.find("Millbrook at Weir Lane"), std::string::npos);
    EXPECT_NE(text.find("MILL02"), std::string::npos);
}

TEST_F(ReportCommand, DifferentInstrumentsAreNamedOnStderrAndLeftBlank) {
    TempDir other;
    const SimRecording third = RecordRiver(other, "OTHER", {"--profiles", "40", "--serial", "K9999"});
    const std::string html = other.File("r.html");
    const ProcessResult r = RunCli({"report", first->path, third.path, "-o", html});
    ASSERT_EQ(r.exitStatus, 0) << r.Describe();
    EXPECT_NE(r.err.find("The following parameters in the files selected for the discharge summary do not match:\n\n"
                         "Serial Number\n"),
              std::string::npos)
        << r.err;
    const std::string text = ReadText(html);
    EXPECT_EQ(text.find(">K0815<"), std::string::npos);
    EXPECT_NE(text.find("Serial Number"), std::string::npos);  // the template's note names it
}

TEST_F(ReportCommand, FailuresLeaveTheEarlierReportAsItWas) {
    const std::string html = dir->File("keep.html");
    std::ofstream(html) << "earlier report";
    const std::string broken = dir->File("broken.htm");
    std::ofstream(broken) << "<p>{{#Data.Records}}</p>";

    ProcessResult r = RunCli({"report", first->path, "-o", html, "--template", broken});
    EXPECT_EQ(r.exitStatus, 2) << r.Describe();
    EXPECT_NE(r.err.find("broken.htm"), std::string::npos);

    r = RunCli({"report", first->path, "-o", html, "--template", dir->File("none.htm")});
    EXPECT_EQ(r.exitStatus, 2) << r.Describe();

    std::ofstream(dir->File("bad.dms")) << "Station Name=x\n";
    r = RunCli({"report", first->path, "-o", html, "--station", dir->File("bad.dms")});
    EXPECT_EQ(r.exitStatus, 2) << r.Describe();
    EXPECT_NE(r.err.find("line 1"), std::string::npos);

    r = RunCli({"report", dir->File("missing.kvr"), "-o", html});
    EXPECT_EQ(r.exitStatus, 2) << r.Describe();

    EXPECT_EQ(ReadText(html), "earlier report");
}

TEST_F(ReportCommand, UsageErrors) {
    EXPECT_EQ(RunCli({"report", first->path}).exitStatus, 64);  // no -o
    EXPECT_EQ(RunCli({"report", "-o", dir->File("x.html")}).exitStatus, 64);  // no file
    EXPECT_EQ(RunCli({"report", first->path, "-o", dir->File("x.html"), "--paper", "a3"}).exitStatus, 64);
    EXPECT_EQ(RunCli({"report", first->path, "-o", dir->File("x.html"), "--digits", "0"}).exitStatus, 64);
    EXPECT_FALSE(std::filesystem::exists(dir->File("x.html")));
}

TEST(ReportTemplateLookup, CandidatesRunFromTheExecutableToTheSourceTree) {
    const std::vector<std::string> candidates =
        cli::ReportTemplateCandidates(cli::kDefaultReportTemplate, "/opt/qr/bin", "/src/qr");
    const std::vector<std::string> expected{"/opt/qr/bin/Reports/Summary-Standard.htm",
                                            "/opt/qr/Reports/Summary-Standard.htm",
                                            "/opt/qr/share/quorle-ripplemark/Reports/Summary-Standard.htm",
                                            "/src/qr/Reports/Summary-Standard.htm"};
    EXPECT_EQ(candidates, expected);
    // Without a known source tree only the installation's places remain.
    EXPECT_EQ(cli::ReportTemplateCandidates("T.htm", "/bin", "").size(), 3u);
    EXPECT_EQ(cli::ReportTemplateCandidates("T.htm", "/bin", "")[1], "/T.htm");
}

}  // namespace
}  // namespace rm::test
