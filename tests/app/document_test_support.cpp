#include "document_test_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace rm::doctest {

Folder::Folder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "rm_doc_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot make a scratch folder");
    path_ = pattern;
}

Folder::~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

sim::RecordingResult RecordRiver(const std::string& path, int profiles,
                                 const std::function<void(sim::RiverScenario&)>& adjust) {
    sim::RiverScenario s;
    s.crossing.profiles = profiles;
    s.crossing.boatSpeedMs = std::min(40.0 / profiles, 2.0);  // at most a 40 m span, centred
    s.outputPath = path;
    if (adjust) adjust(s);
    RecordingPrompt prompt;
    sim::RecordingResult result = sim::WriteRiverRecording(s, prompt);
    if (!result.ok) throw std::runtime_error("recording failed: " + result.error);
    return result;
}

void RewriteRecording(const std::string& from, const std::string& to,
                      const std::function<void(InstrumentConf&)>& conf,
                      const std::function<void(ProfileRecord&, int)>& profile) {
    CKvrData in;
    if (!in.OpenFile(from) || in.Validate() != kReadOk || in.ReadHeader(false) != kReadOk) {
        throw std::runtime_error("cannot read " + from);
    }
    in.SetCacheCapacity(1);
    CKvrData out;
    RecordingPrompt prompt;
    out.SetPrompt(&prompt);
    out.conf = in.conf;
    out.oper = in.oper;
    out.user = in.user;
    out.calibration = in.calibration;
    if (conf) conf(out.conf);
    if (!out.CreateDataFile(to) || !out.WriteHeader()) throw std::runtime_error("cannot write " + to);
    for (int i = 0; i < in.ProfileCount(); ++i) {
        if (in.LoadProfile(i, 0) != kReadOk) throw std::runtime_error("cannot read a profile of " + from);
        ProfileRecord record = in.Slot(0);
        if (profile) profile(record, i + 1);
        if (!out.WriteProfile(record)) throw std::runtime_error("cannot write a profile to " + to);
    }
    if (!out.CloseFile()) throw std::runtime_error("cannot close " + to);
}

CSurveyKVRDoc::Options WithFailingProfiles(std::set<int> failingGroups, int profilesHeld) {
    CSurveyKVRDoc::Options options;
    options.profilesHeld = profilesHeld;
    options.makeSource = [failingGroups](CKvrData& data) -> std::unique_ptr<ProfileSource> {
        return std::make_unique<FailingSource>(data, failingGroups);
    };
    return options;
}

CSurveyKVRDoc::Options WithWindow(int profilesHeld) {
    CSurveyKVRDoc::Options options;
    options.profilesHeld = profilesHeld;
    return options;
}

}  // namespace rm::doctest
