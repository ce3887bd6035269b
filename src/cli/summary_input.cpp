#include "cli/summary_input.h"

#include <cstdio>
#include <exception>

#include "cli/command.h"

namespace rm::cli {

namespace {

bool IsDisFile(const std::string& path) {
    if (path.size() < 4) return false;
    const std::string tail = path.substr(path.size() - 4);
    return tail == ".dis" || tail == ".DIS";
}

}  // namespace

int AddTransectToSummary(const std::string& path, ProcessingOptions options, SummaryList& list,
                         const std::function<void(CSurveyKVRDoc&)>& onProcessed) {
    if (IsDisFile(path)) {
        const DisReadResult read = AddDisFileToSummary(list, path);
        if (!read.ok) {
            std::fprintf(stderr, "%s: %s\n", path.c_str(), read.error.c_str());
            return kExitBadFile;
        }
        return kExitOk;
    }
    try {
        options.path = path;
        ProcessingSession session;
        const int opened = OpenProcessingSession(options, session);
        if (opened != kExitOk) return opened;
        CSurveyKVRDoc& document = *session.document;
        if (!document.Recompute()) {
            std::fprintf(stderr, "%s: the data file could not be read\n", path.c_str());
            return kExitFailure;
        }
        if (onProcessed) onProcessed(document);
        list.Add(document.MeasurementRecord());
        return kExitOk;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "%s: %s\n", path.c_str(), e.what());
        return kExitBadFile;
    }
}

}  // namespace rm::cli
