// ripplemark-cli summary FILE... [processing options] [--json] [--copy] [--digits N]: processes
// each recording (or reads each .dis file) into the discharge summary list and prints the list
// as the "Discharge Summary" shows it: a row per transect, sorted by start time of day, the
// blank row and the rows "Mean", "Std. Dev." and "Coefficient of Variation".

#include <cstdio>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "app/summary_list.h"
#include "cli/command.h"
#include "cli/json_output.h"
#include "cli/processing_session.h"
#include "cli/summary_input.h"
#include "cli/summary_output.h"
#include "output/summary_table.h"

namespace rm::cli {
namespace {

struct SummaryCommandOptions {
    std::vector<std::string> files;
    ProcessingOptions processing;
    bool json = false;
    bool copy = false;
    int digits = 5;
};

int RunSummary(const SummaryCommandOptions& options) {
    SummaryList list;
    for (const std::string& path : options.files) {
        const int status = AddTransectToSummary(path, options.processing, list);
        if (status != kExitOk) return status;
    }
    SummaryTableOptions tableOptions;
    tableOptions.unitSystem = options.processing.units >= 0 ? options.processing.units : 1;
    tableOptions.significantDigits = options.digits;
    const SummaryTable table = BuildSummaryTable(list, tableOptions);
    AppSettings app{UserFolders{}};
    const std::vector<SummaryColumnState> columns = GiveColumnNodes(SummaryColumnsNode(app));
    if (options.json) {
        PrintJson(SummaryJson(table, columns));
    } else {
        const std::string text = options.copy ? SummaryCopyText(table) : SummaryListText(table, columns);
        std::fwrite(text.data(), 1, text.size(), stdout);
    }
    return kExitOk;
}

const CommandRegistration registration{Command{
    "summary",
    "Process data files (.kvr) or read .dis files and print the discharge summary of their transects",
    [](CLI::App& sub) -> std::function<int()> {
        auto options = std::make_shared<SummaryCommandOptions>();
        sub.add_option("FILE", options->files, "Data files (.kvr) or discharge files (.dis)")->required();
        AddProcessingSettingOptions(sub, options->processing);
        sub.add_flag("--json", options->json, "Print the rows as JSON");
        sub.add_flag("--copy", options->copy, "Print the Copy text (tab after every cell, CR LF line ends)");
        sub.add_option("--digits", options->digits, "Significant digits of the rounded columns (default 5)")
            ->check(CLI::Range(1, 15));
        return [options] { return RunSummary(*options); };
    }}};

}  // namespace
}  // namespace rm::cli
