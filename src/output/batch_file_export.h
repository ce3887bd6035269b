#pragma once
// One data file of a batch export, self-contained so that files can run on separate threads:
// its own copy of the application settings, its own document, and the messages it would show
// kept for the caller to show in the order of the list.

#include <memory>
#include <string>
#include <vector>

#include "app/app_settings.h"
#include "output/batch_export.h"
#include "processing/discharge_data.h"

namespace rm {

enum class BatchFileStatus { Exported, Refused, Skipped };

struct BatchFileResult {
    BatchFileStatus status = BatchFileStatus::Skipped;
    // The messages of the file, in order: {title, text}; the title is empty for plain messages.
    std::vector<std::pair<std::string, std::string>> messages;
    std::string fdxBlock;                     // the file's Measurement block of the .fdx
    std::shared_ptr<CDischargeData> record;   // for the discharge summary
    int failedOutputs = 0;
};

// A copy of a whole tree: the copy shares no node with the original.
NodeRef CopyTree(const NodeRef& source);

// Exports one file. `appTree` is this file's own copy of the application's settings tree (see
// CopyTree): reference counts are not atomic, so no node may be shared with another thread.
BatchFileResult ExportBatchFile(const std::string& path, const BatchExportSettings& settings, NodeRef appTree);

}  // namespace rm
