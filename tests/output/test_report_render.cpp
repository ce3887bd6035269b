// The report tree rendered through Mustache templates: exact HTML for a small template, the
// escaping of texts, the parameter list, the mismatch section, template errors, and the shipped
// template with every placeholder filled.

#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "output/report_render.h"
#include "output/report_tree.h"
#include "processing/settings_reader.h"

namespace rm {
namespace {

std::shared_ptr<CDischargeData> Transect(const std::string& name, float total) {
    auto r = std::make_shared<CDischargeData>();
    r->settings = NodeRef::MakeNew();
    CreateDischargeDefaults(r->settings.GetOrCreateChild(kDischargeNode));
    r->fileName = name;
    r->Active = 1;
    r->TotalDischarge = total;
    return r;
}

ReportTree ThreeTransects() {
    ReportSettings s;
    s.significantDigits = 3;
    s.usgsRounding = true;
    return BuildReportTree({{Transect("/d/R&D <1>.kvr", 10.0f), {}},
                            {Transect("/d/B.kvr", 10.2f), {}},
                            {Transect("/d/C.kvr", 12.0f), {}}},
                           s, {{"StationName", "Weir & Lane"}});
}

std::string Render(const std::string& text, const ReportTree& tree) {
    std::string html, error;
    EXPECT_TRUE(RenderReport(text, tree, html, error)) << error;
    return html;
}

TEST(ReportRender, SmallTemplateGivesExactHtml) {
    const std::string text =
        "{{#Data.Records}}<tr{{#Italic}} class=\"i\"{{/Italic}}><td>{{Index}}</td><td>{{FileName}}</td>"
        "<td>{{TotalDischarge}}</td></tr>\n{{/Data.Records}}"
        "{{User.UnitDischarge}}|{{Collection.StationName}}|{{Data.Statistics.Rm.TotalDischarge}}|"
        "{{{Collection.StationName}}}";
    // Totals 10, 10.2, 12: mean 10.733, 5% of it 0.537, so the first and the last are italic.
    // Deviation sqrt((0.7333^2 + 0.5333^2 + 1.2667^2) / 2) = 1.1015; coefficient 0.1026.
    const std::string expected =
        "<tr class=\"i\"><td>1</td><td>R&amp;D &lt;1&gt;</td><td>10</td></tr>\n"
        "<tr><td>2</td><td>B</td><td>10.2</td></tr>\n"
        "<tr class=\"i\"><td>3</td><td>C</td><td>12</td></tr>\n"
        "m3/s|Weir &amp; Lane|0.103|Weir & Lane";
    EXPECT_EQ(Render(text, ThreeTransects()), expected);
}

TEST(ReportRender, ParametersAreListedWithTheirLabelsAndStatisticsByRow) {
    const ReportTree tree = ThreeTransects();
    const std::string html = Render(
        "{{#User.Parameters}}{{Label}}=[{{Text}}]\n{{/User.Parameters}}{{Data.Statistics.Mean.TotalDischarge}}/"
        "{{Data.Statistics.Total.EndTime}}/{{#Data.HasRecords}}yes{{/Data.HasRecords}}",
        tree);
    EXPECT_EQ(html.rfind("Profile Extrapolation - Top Fit=[Power               ]\n", 0), 0u) << html;
    EXPECT_NE(html.find("Echo Sounder=[Not Pres.]\n"), std::string::npos);
    EXPECT_EQ(html.find("RipplemarkVersion"), std::string::npos);  // untitled entries are not listed
    EXPECT_NE(html.find("\n10.7/00:00/yes"), std::string::npos) << html;
}

TEST(ReportRender, MismatchSectionNamesTheParameters) {
    auto a = Transect("A.kvr", 1.0f);
    auto b = Transect("B.kvr", 1.0f);
    a->SystemName = "K1";
    b->SystemName = "K2";
    const ReportTree tree = BuildReportTree({{a, {}}, {b, {}}}, ReportSettings{});
    const std::string text =
        "{{#Collection.Mismatch}}{{#Collection.MismatchedParameters}}[{{Label}}]{{/Collection.MismatchedParameters}}"
        "{{/Collection.Mismatch}}{{^Collection.Mismatch}}none{{/Collection.Mismatch}}";
    EXPECT_EQ(Render(text, tree), "[Serial Number]");
    EXPECT_EQ(Render(text, ThreeTransects()), "none");
}

TEST(ReportRender, BrokenTemplateIsAnErrorWithoutOutput) {
    std::string html = "old", error;
    EXPECT_FALSE(RenderReport("<p>{{#Data.Records}}never closed</p>", ThreeTransects(), html, error));
    EXPECT_NE(error.find("not valid"), std::string::npos) << error;
    EXPECT_FALSE(RenderReportFile("/nonexistent/folder/T.htm", ThreeTransects(), html, error));
    EXPECT_NE(error.find("/nonexistent/folder/T.htm"), std::string::npos);
}

TEST(ReportRender, ShippedTemplateFillsEveryPlaceholder) {
    const std::string source = __FILE__;
    const std::string root = source.substr(0, source.rfind("/tests/"));
    std::string html, error;
    ASSERT_TRUE(RenderReportFile(root + "/Reports/Summary-Standard.htm", ThreeTransects(), html, error)) << error;
    EXPECT_EQ(html.find("{{"), std::string::npos);
    EXPECT_NE(html.find("<title>Discharge Report - Weir &amp; Lane</title>"), std::string::npos);
    EXPECT_NE(html.find("R&amp;D &lt;1&gt;"), std::string::npos);
    EXPECT_NE(html.find("Discharge (m3/s)"), std::string::npos);
    EXPECT_NE(html.find("class=\"italic\""), std::string::npos);
    EXPECT_EQ(html.find("No transect is listed."), std::string::npos);

    const ReportTree empty = BuildReportTree({}, ReportSettings{});
    ASSERT_TRUE(RenderReportFile(root + "/Reports/Summary-Standard.htm", empty, html, error)) << error;
    EXPECT_NE(html.find("No transect is listed."), std::string::npos);
}

TEST(ReportRender, PicturesTemplateAddsEachTransectsPicturesAndTheStandardOneIgnoresThem) {
    const std::string source = __FILE__;
    const std::string root = source.substr(0, source.rfind("/tests/"));
    ReportSettings s;
    s.reportDate = "2026-11-24 08:00";
    std::vector<ReportTransect> transects{{Transect("/d/A.kvr", 10.0f), {}}, {Transect("/d/B.dis", 11.0f), {}}};
    const std::vector<ReportTransect> plain = transects;
    transects[0].rowTexts = {{"ContourPicture", "data:image/png;base64,QUJD"},
                             {"TrackPicture", "data:image/png;base64,REVG"},
                             {"FileName", "not a column to replace"}};
    const ReportTree withPictures = BuildReportTree(transects, s);
    const ReportTree without = BuildReportTree(plain, s);
    EXPECT_EQ(*FindReportField(withPictures.records[0].fields, "FileName"), "A");

    std::string standardWith, standardWithout, pictures, error;
    ASSERT_TRUE(RenderReportFile(root + "/Reports/Summary-Standard.htm", withPictures, standardWith, error)) << error;
    ASSERT_TRUE(RenderReportFile(root + "/Reports/Summary-Standard.htm", without, standardWithout, error)) << error;
    EXPECT_EQ(standardWith, standardWithout);

    ASSERT_TRUE(RenderReportFile(root + "/Reports/Summary-Pictures.htm", withPictures, pictures, error)) << error;
    EXPECT_EQ(pictures.find("{{"), std::string::npos);
    // The data URIs go in as they are (not escaped), once each, in the first transect's section.
    const size_t contour = pictures.find("<img src=\"data:image/png;base64,QUJD\"");
    const size_t track = pictures.find("<img src=\"data:image/png;base64,REVG\"");
    ASSERT_NE(contour, std::string::npos);
    ASSERT_NE(track, std::string::npos);
    EXPECT_LT(contour, track);
    EXPECT_EQ(pictures.find("QUJD", contour + 40), std::string::npos);
    const size_t second = pictures.find("<h3>2. B");
    ASSERT_NE(second, std::string::npos);
    EXPECT_LT(track, second);
    EXPECT_NE(pictures.find("No pictures", second), std::string::npos);
    EXPECT_EQ(pictures.find("No pictures"), pictures.find("No pictures", second));
    // Everything the standard report shows is there too: its transect tables, row by row.
    for (const char* piece : {"<h2>Transects</h2>", "<h2>Discharge (m3/s)</h2>", "<h2>Edges</h2>"}) {
        const size_t a = standardWithout.find(piece), b = pictures.find(piece);
        ASSERT_NE(a, std::string::npos) << piece;
        ASSERT_NE(b, std::string::npos) << piece;
        const size_t end = standardWithout.find("</table>", a);
        EXPECT_EQ(pictures.substr(b, end - a), standardWithout.substr(a, end - a)) << piece;
    }
}

}  // namespace
}  // namespace rm
