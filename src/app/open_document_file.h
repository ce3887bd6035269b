#pragma once
// OpenDocumentFile: the one way by which a data file gets into a document. The file is checked
// and its facts taken with a private CKvrData, the .pmk's settings are read for the dialog, the
// load dialog chooses the profiles, and a document opens the file with that choice.

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/load_fields.h"
#include "app/load_selection.h"
#include "app/survey_document.h"

namespace rm {

constexpr const char* kNotValidKvrFile = "The file is not a valid Kvr file";

// What the load dialog shows, and the answer of its last OK when that was refused.
struct LoadDialogInfo {
    std::string caption;  // "FileName: " followed by the path
    int32_t profileCount = 0;
    ProfileMemoryFacts facts;
    int32_t echoSounderPresent = 0;
    std::string refusal;     // empty on the first showing; else the message of the refused OK
    LoadDialogInput input;   // the fields as the dialog shows them
};

// The person's answer: the fields at OK, or nothing for Cancel. A refused OK shows the message
// and asks again with the refusal filled in.
using LoadDialogRunner = std::function<std::optional<LoadDialogInput>(const LoadDialogInfo&)>;

// The file facts the dialog sizes its memory check with.
ProfileMemoryFacts MemoryFactsOf(const CKvrData& data);

// Opens `path` into a new document. Null when the file cannot be opened (no message), is not a
// data file ("The file is not a valid Kvr file"), the dialog is cancelled, or the document's own
// open fails. `fields` receives the load fields given to the document.
std::unique_ptr<CSurveyKVRDoc> OpenDocumentFile(const std::string& path, AppSettings& app, UserPrompt& prompt,
                                                const LoadDialogRunner& dialog,
                                                CSurveyKVRDoc::Options options = CSurveyKVRDoc::Options{},
                                                LoadFields* fields = nullptr,
                                                uint64_t availableBytes = AvailableMemoryBytes());

}  // namespace rm
