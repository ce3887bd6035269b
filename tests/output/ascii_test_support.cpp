#include "ascii_test_support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "data/kvr_data.h"
#include "sim/recording_writer.h"

namespace rm::asciitest {

ScratchFolder::ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "rm_ascii_XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("cannot make a scratch folder");
    path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void MakeRecording(const std::string& path, int profiles, const std::function<void(sim::RiverScenario&)>& adjust,
                   const std::function<void(ProfileRecord&, int)>& profile,
                   const std::function<void(CKvrData&)>& records) {
    sim::RiverScenario s;
    s.crossing.profiles = profiles;
    s.crossing.boatSpeedMs = std::min(40.0 / profiles, 2.0);
    const bool rewrite = profile || records;
    s.outputPath = rewrite ? path + ".orig.kvr" : path;
    if (adjust) adjust(s);
    RecordingPrompt prompt;
    const sim::RecordingResult result = sim::WriteRiverRecording(s, prompt);
    if (!result.ok) throw std::runtime_error("recording failed: " + result.error);
    if (!rewrite) return;
    CKvrData in;
    if (!in.OpenFile(s.outputPath) || in.Validate() != kReadOk || in.ReadHeader(false) != kReadOk) {
        throw std::runtime_error("cannot read the recording");
    }
    in.SetCacheCapacity(1);
    CKvrData out;
    out.SetPrompt(&prompt);
    out.conf = in.conf;
    out.oper = in.oper;
    out.user = in.user;
    out.calibration = in.calibration;
    if (records) records(out);
    if (!out.CreateDataFile(path) || !out.WriteHeader()) throw std::runtime_error("cannot write " + path);
    for (int i = 0; i < in.ProfileCount(); ++i) {
        if (in.LoadProfile(i, 0) != kReadOk) throw std::runtime_error("cannot read a profile");
        ProfileRecord record = in.Slot(0);
        if (profile) profile(record, i + 1);
        if (!out.WriteProfile(record)) throw std::runtime_error("cannot write a profile");
    }
    if (!out.CloseFile()) throw std::runtime_error("cannot close " + path);
}

std::unique_ptr<OpenedDocument> OpenRecording(const std::string& path, int unitSystem) {
    auto opened = std::make_unique<OpenedDocument>();
    opened->app.Set(app_keys::UnitSystem, static_cast<int16_t>(unitSystem));
    CSurveyKVRDoc::Options options;
    options.profilesHeld = 1 << 20;
    opened->doc = std::make_unique<CSurveyKVRDoc>(opened->app, opened->prompt, kModePlayback, options);
    if (opened->doc->OpenDocument(path) != 1) throw std::runtime_error("cannot open " + path);
    return opened;
}

std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string ReadText(const std::string& path) {
    const std::string bytes = ReadAll(path);
    std::string text;
    text.reserve(bytes.size());
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') continue;
        if (bytes[i] == '\n' && (i == 0 || bytes[i - 1] != '\r')) {
            ADD_FAILURE() << path << ": bare line feed at byte " << i;
        }
        text += bytes[i];
    }
    return text;
}

std::vector<std::string> TextLines(const std::string& path) {
    const std::string text = ReadText(path);
    std::vector<std::string> lines;
    std::string::size_type start = 0;
    for (std::string::size_type end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
        lines.push_back(text.substr(start, end - start));
    }
    lines.push_back(text.substr(start));
    return lines;
}

std::vector<double> Numbers(const std::string& line) {
    std::istringstream in(line);
    std::vector<double> values;
    for (std::string word; in >> word;) {
        if (word.find(':') != std::string::npos) continue;
        values.push_back(std::stod(word));
    }
    return values;
}

bool Exists(const std::string& path) { return std::filesystem::exists(path); }

}  // namespace rm::asciitest
