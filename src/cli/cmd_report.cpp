// ripplemark-cli report FILE... -o OUT.html [--pdf OUT.pdf] [--template T.htm] [--station S.dms]:
// processes each recording (or reads each .dis file) into the discharge summary list, as the
// desktop program's "&Discharge Report..." does, builds the measurement report's tree from the
// listed transects and renders it through the HTML template; with --pdf the same HTML is laid
// out on pages. Parameters that differ between the files are named on stderr.

#include <cstdio>
#include <ctime>
#include <exception>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "app/summary_list.h"
#include "cli/command.h"
#include "cli/processing_session.h"
#include "cli/summary_input.h"
#include "cli/report_template_path.h"
#include "output/report_inputs.h"
#include "output/report_render.h"
#include "output/report_tree.h"
#include "output/station_file.h"

#ifdef RM_HAVE_REPORT_PDF
#include "report_pdf/report_pdf.h"
#endif

namespace rm::cli {
namespace {

struct ReportCommandOptions {
    std::vector<std::string> files;
    ProcessingOptions processing;
    std::string output;
    std::string pdf;
    std::string templatePath;
    std::string stationFile;
    std::string stationName;
    std::string reportDate;
    int paper = 0;        // 0 A4, 1 Letter
    int digits = -1;      // -1: the application's SignificantDigits
    int rounding = -1;    // -1: the application's UseUsgsRoundingFormat; 1 USGS, 0 significant digits
};

std::string Now() {
    const std::time_t t = std::time(nullptr);
    std::tm local{};
    localtime_r(&t, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &local);
    return text;
}

// Writes under a temporary name and renames, so that a failed write keeps an older file.
bool WriteWhole(const std::string& path, const std::string& text) {
    const std::string part = path + ".part";
    {
        std::ofstream out(part, std::ios::binary | std::ios::trunc);
        if (!out) return false;
        out.write(text.data(), static_cast<std::streamsize>(text.size()));
        out.flush();
        if (!out) {
            out.close();
            std::remove(part.c_str());
            return false;
        }
    }
    if (std::rename(part.c_str(), path.c_str()) != 0) {
        std::remove(part.c_str());
        return false;
    }
    return true;
}

int StationFields(const ReportCommandOptions& options, ReportFields& station) {
    if (!options.stationFile.empty()) {
        std::string error;
        if (!ReadStationFile(options.stationFile, station, error)) {
            std::fprintf(stderr, "%s\n", error.c_str());
            return kExitBadFile;
        }
    }
    if (!options.stationName.empty()) {
        bool replaced = false;
        for (ReportField& field : station) {
            if (field.key == "StationName") {
                field.text = options.stationName;
                replaced = true;
            }
        }
        if (!replaced) station.insert(station.begin(), ReportField{"StationName", options.stationName});
    }
    return kExitOk;
}

int RunReport(const ReportCommandOptions& options) {
    ReportFields station;
    if (const int status = StationFields(options, station); status != kExitOk) return status;

    std::string templatePath = options.templatePath;
    if (templatePath.empty()) {
        std::vector<std::string> tried;
        templatePath = FindReportTemplate(kDefaultReportTemplate, tried);
        if (templatePath.empty()) {
            std::fprintf(stderr, "The report template %s was not found; looked at:\n", kDefaultReportTemplate);
            for (const std::string& path : tried) std::fprintf(stderr, "  %s\n", path.c_str());
            return kExitFailure;
        }
    }
#ifndef RM_HAVE_REPORT_PDF
    if (!options.pdf.empty()) {
        std::fprintf(stderr, "--pdf: this build of ripplemark-cli has no PDF output (it was built without Qt 6)\n");
        return kExitUsage;
    }
#endif

    SummaryList list;
    std::map<const CDischargeData*, TransectFacts> facts;
    for (const std::string& path : options.files) {
        const int status = AddTransectToSummary(path, options.processing, list, [&](CSurveyKVRDoc& document) {
            facts[document.MeasurementRecord().get()] = TransectFactsOf(document);
        });
        if (status != kExitOk) return status;
    }

    AppSettings app{UserFolders{}};
    ReportSettings settings = ReportSettingsOf(app);
    if (options.processing.units >= 0) settings.unitSystem = options.processing.units;
    if (options.digits > 0) settings.significantDigits = options.digits;
    if (options.rounding >= 0) settings.usgsRounding = options.rounding == 1;
    settings.reportDate = options.reportDate.empty() ? Now() : options.reportDate;

    std::vector<ReportTransect> transects;
    for (const SummaryList::Record& record : list.Records()) {
        if (!record || !IsShown(*record)) continue;
        const auto found = facts.find(record.get());
        transects.push_back({record, found == facts.end() ? TransectFacts{} : found->second});
    }
    const ReportTree tree = BuildReportTree(transects, settings, station);
    const std::string mismatch = tree.MismatchMessage();
    if (!mismatch.empty()) std::fprintf(stderr, "%s\n", mismatch.c_str());

    std::string html, error;
    if (!RenderReportFile(templatePath, tree, html, error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return kExitBadFile;
    }
    if (!WriteWhole(options.output, html)) {
        std::fprintf(stderr, "%s: cannot write the report\n", options.output.c_str());
        return kExitFailure;
    }
    std::printf("%s\n", options.output.c_str());
#ifdef RM_HAVE_REPORT_PDF
    if (!options.pdf.empty()) {
        PdfOptions pdfOptions;
        pdfOptions.paper = options.paper == 1 ? PaperSize::Letter : PaperSize::A4;
        const std::string* name = FindReportField(tree.collection, "StationName");
        pdfOptions.title = name != nullptr && !name->empty() ? "Discharge Report - " + *name : "Discharge Report";
        const PdfResult pdf = WriteHtmlPdf(html, options.pdf, pdfOptions);
        if (!pdf.ok) {
            std::fprintf(stderr, "%s\n", pdf.error.c_str());
            return kExitFailure;
        }
        std::printf("%s (%d page%s)\n", options.pdf.c_str(), pdf.pages, pdf.pages == 1 ? "" : "s");
    }
#endif
    return kExitOk;
}

const CommandRegistration registration{Command{
    "report",
    "Process data files (.kvr) or read .dis files and write the measurement report as HTML (and PDF)",
    [](CLI::App& sub) -> std::function<int()> {
        auto options = std::make_shared<ReportCommandOptions>();
        static const std::map<std::string, int> kPaper{{"a4", 0}, {"letter", 1}};
        static const std::map<std::string, int> kRounding{{"usgs", 1}, {"digits", 0}};
        sub.add_option("FILE", options->files, "Data files (.kvr) or discharge files (.dis)")->required();
        AddProcessingSettingOptions(sub, options->processing);
        sub.add_option("-o,--output", options->output, "The HTML report to write")->required();
        sub.add_option("--pdf", options->pdf, "Also write the report as PDF");
        sub.add_option("--template", options->templatePath,
                       "The report template (.htm); default: the shipped Reports/Summary-Standard.htm");
        sub.add_option("--station", options->stationFile, "A measurement station file (.dms) of Key=Value lines");
        sub.add_option("--station-name", options->stationName, "The station's name (replaces StationName of --station)");
        sub.add_option("--paper", options->paper, "Paper of the PDF: a4 or letter")
            ->transform(CLI::CheckedTransformer(kPaper, CLI::ignore_case));
        sub.add_option("--digits", options->digits, "Significant digits of discharges (default 5)")
            ->check(CLI::Range(1, 15));
        sub.add_option("--rounding", options->rounding,
                       "Rounding of discharges: usgs (exact halves to even) or digits (default usgs)")
            ->transform(CLI::CheckedTransformer(kRounding, CLI::ignore_case));
        sub.add_option("--report-date", options->reportDate, "The date shown as the report's date (default: now)");
        return [options] { return RunReport(*options); };
    }}};

}  // namespace
}  // namespace rm::cli
