#pragma once
// Helpers of the document tests: recordings of the virtual river made in-process, recordings
// rewritten with a changed head or changed profiles, readers of the data file that count their
// reads or fail on chosen profiles, and documents opened over them.

#include <functional>
#include <memory>
#include <set>
#include <string>

#include "app/app_settings.h"
#include "app/survey_document.h"
#include "data/user_prompt.h"
#include "sim/recording_writer.h"
#include "sim/river_scenario.h"

namespace rm::doctest {

class Folder {
public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    const std::string& path() const { return path_; }
    std::string File(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

// A scenario of `profiles` profiles written to `path`; `adjust` changes it before writing.
sim::RecordingResult RecordRiver(const std::string& path, int profiles,
                                 const std::function<void(sim::RiverScenario&)>& adjust = {});

// Copies the recording `from` to `to` through the data file reader and writer; `conf` changes
// the head's configuration, `profile` each profile (number from 1) before it is written.
void RewriteRecording(const std::string& from, const std::string& to,
                      const std::function<void(InstrumentConf&)>& conf,
                      const std::function<void(ProfileRecord&, int)>& profile = {});

// Reads through CKvrData, but fails (read error) for the groups (from 0) in `failing`.
class FailingSource : public ProfileSource {
public:
    FailingSource(CKvrData& data, std::set<int> failing) : ProfileSource(data), failing_(std::move(failing)) {}

protected:
    int ReadRecord(int group, int slot) override {
        if (failing_.count(group) != 0) return kReadError;
        return ProfileSource::ReadRecord(group, slot);
    }

private:
    std::set<int> failing_;
};

CSurveyKVRDoc::Options WithFailingProfiles(std::set<int> failingGroups, int profilesHeld = kDefaultProfilesHeld);
CSurveyKVRDoc::Options WithWindow(int profilesHeld);

// Application settings that never touch the person's own folders.
struct TestApp {
    Folder folder;
    AppSettings app{UserFolders{folder.path(), folder.path()}};
    RecordingPrompt prompt;
};

}  // namespace rm::doctest
