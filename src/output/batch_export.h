#pragma once
// The batch export ("&Batch Data File Export"): a list of data files reprocessed under common
// settings. For each file its Universal ASCII output (.T, with the discharge block), its raw GPS
// and echo sounder sentences (.GPS, .ECS) and its discharge text (.DIS), its block of the one
// .fdx file of the list, and its record for the discharge summary. Files that face up or sideways
// are refused with a message and the run goes on; files that cannot be opened are passed over.
//
// Files are independent: with more than one job they are processed on as many threads, each
// with its own document and copy of the application settings. Messages, progress, the .fdx and
// the summary list are put together in the order of the list, so the result does not depend on
// the number of jobs.

#include <string>
#include <vector>

#include "app/app_settings.h"
#include "app/summary_list.h"
#include "data/user_prompt.h"

namespace rm {

constexpr const char* kBatchExportTitle = "Export files";
constexpr const char* kAllFilesExported = "All files exported";

// The "General Export Settings".
struct BatchExportSettings {
    int trackReference = -1;     // 1 bottom track, 2 GPS; -1 keeps each file's own
    int velocityReference = -1;  // 0 the instrument, 1 bottom track, 2 GPS; -1 keeps each file's own
    bool useCurrentSalinity = true;
    double salinity = 0.0;  // ppt, forced when useCurrentSalinity is false
    bool useCurrentMagneticDeclination = true;
    double magneticDeclination = 0.0;  // degrees, forced when the above is false
    bool addRecordToDischargeSummary = true;
    bool exportToDifferentDirectory = false;
    std::string outputDirectory;
    int jobs = 1;  // files processed at once
};

// The message shown for a data file of an up- or side-looking system.
std::string UpOrSideLookingMessage(const std::string& file);

// The list with every folder replaced by its files ending in ".kvr" (any case), by name.
// Entries that are neither stay as they are (opening them fails later). Duplicates stay.
std::vector<std::string> ResolveBatchList(const std::vector<std::string>& entries);

// Where a file's outputs go: the output directory, or the data file's own folder; the data
// file's stem followed by `extension`.
std::string BatchOutputPath(const BatchExportSettings& settings, const std::string& dataFile,
                            const std::string& extension);
// The .fdx of a list: named after the first data file, in the output directory or beside it.
std::string BatchFdxPath(const BatchExportSettings& settings, const std::vector<std::string>& files);

struct BatchExportResult {
    bool ok = false;  // false when the .fdx could not be created or written
    int exported = 0;
    int refused = 0;  // up- or side-looking
    int skipped = 0;  // could not be opened
    int failedOutputs = 0;  // outputs that could not be written
    std::string fdxPath;
};

// Runs the export over `entries` (files and folders). `app` gives the unit system and the
// significant digits of the text outputs; `summary`, when not null, receives the records.
// Progress is told per file through prompt.Progress(file number, count, path), messages through
// prompt.Message, and "All files exported" at the end.
BatchExportResult RunBatchExport(const std::vector<std::string>& entries, const BatchExportSettings& settings,
                                 const AppSettings& app, SummaryList* summary, UserPrompt& prompt);

}  // namespace rm
