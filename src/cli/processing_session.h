#pragma once
// A data file opened for processing from the command line, as the desktop program opens it:
// the .cfg and .pmk beside it, the load selection, then the settings the command line changes.
// The application's settings are the defaults (AppSettings.conf of the person running the tool
// is not read), so that a result depends only on the recording, its side files and the options.

#include <CLI/CLI.hpp>

#include <memory>
#include <string>
#include <vector>

#include "app/app_settings.h"
#include "app/survey_document.h"
#include "data/user_prompt.h"

namespace rm::cli {

struct ProcessingOptions {
    std::string path;
    std::vector<std::string> sets;  // PATH=VALUE below the document root
    // -1 where the option is not given.
    int trackReference = -1;     // bt 1 | gps 2
    int velocityReference = -1;  // kvr 0 | bt 1 | gps 2
    int coordinates = -1;        // beam 0 | xyz 1 | enu 2
    int units = -1;              // metric 1 | english 0
    int first = 0, last = 0;        // 0: not given
    int every = 0, average = 0;     // 0: not given
};

// Adds FILE and the processing options to a command.
void AddProcessingOptions(CLI::App& sub, ProcessingOptions& options);
// The processing options without FILE, for commands that take several files.
void AddProcessingSettingOptions(CLI::App& sub, ProcessingOptions& options);

struct ProcessingSession {
    AppSettings app{UserFolders{}};
    StderrPrompt prompt;
    std::unique_ptr<CSurveyKVRDoc> document;
};

// Opens the file and applies the options. Returns kExitOk, or the exit status of the failure
// with the reason already printed on stderr.
int OpenProcessingSession(const ProcessingOptions& options, ProcessingSession& session);

// The text of a profile time, "YYYY-MM-DD hh:mm:ss.hh".
std::string TimeText(const ProfileHeader& header);

}  // namespace rm::cli
