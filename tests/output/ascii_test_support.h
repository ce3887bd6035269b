#pragma once
// Helpers of the plain-text export tests: a scratch folder, recordings of the virtual river
// made in-process (optionally rewritten with chosen profile values), documents opened over
// them, and readers of the written files.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/app_settings.h"
#include "app/survey_document.h"
#include "data/kvr_data.h"
#include "data/user_prompt.h"
#include "sim/river_scenario.h"

namespace rm::asciitest {

class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;
    std::string File(const std::string& name) const { return path_ + "/" + name; }
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

// A recording of `profiles` profiles at `path`; `adjust` changes the scenario, `profile` each
// profile (number from 1) before it is stored, `records` the instrument's records of the file.
void MakeRecording(const std::string& path, int profiles, const std::function<void(sim::RiverScenario&)>& adjust = {},
                   const std::function<void(ProfileRecord&, int)>& profile = {},
                   const std::function<void(CKvrData&)>& records = {});

struct OpenedDocument {
    ScratchFolder settingsFolder;
    AppSettings app{UserFolders{settingsFolder.path(), settingsFolder.path()}};
    RecordingPrompt prompt;
    std::unique_ptr<CSurveyKVRDoc> doc;
};
// Opens the recording with every profile held; throws when it cannot.
std::unique_ptr<OpenedDocument> OpenRecording(const std::string& path, int unitSystem = 1);

std::string ReadAll(const std::string& path);
// A file the program wrote as text, its "\r\n" line ends read as "\n". A bare line feed (not a
// line end of the program's text files) fails the calling test.
std::string ReadText(const std::string& path);
// ReadText split at its line ends (a leading line end gives an empty first line).
std::vector<std::string> TextLines(const std::string& path);
std::vector<double> Numbers(const std::string& line);
bool Exists(const std::string& path);

}  // namespace rm::asciitest
