#pragma once
// The recording folder for the commands that keep files there when no folder is given (record,
// setup's configurations, systest's log), found as the desktop program finds it at its start.

#include <string>

#include "data/user_prompt.h"

namespace rm::cli {

// Reads AppSettings.conf for RecordedFileDirectory (its default: "QorData" in the documents
// folder), makes that folder and the reports folder, and writes AppSettings.conf with its
// defaults when there is none yet, so that the file the settings live in is there to be read and
// edited; an existing file is never written. Returns the folder with a trailing '/', or empty
// after a message when it cannot be made.
std::string RecordingFolderFromSettings(UserPrompt& prompt);

}  // namespace rm::cli
