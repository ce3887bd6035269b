#pragma once
// The .pmk companion of a recording: the GPS and echo sounder lines that arrived during each
// profile. The file is a run of bare trees: first the settings, then one tree per profile,
// appended as the recording goes on. The reader names them "Settings", "Prf1", "Prf2", ...

#include <cstdint>
#include <cstdio>
#include <string>

#include "data/node_tree.h"
#include "data/user_prompt.h"

namespace rm {

// The four keys of the Settings tree.
struct PmkSettings {
    int32_t gpsPresent = 0;
    int32_t echoSounderPresent = 0;
    std::string customEsString;
    int32_t depthIndex = 0;
};

// "Prf%d" with the 1-based profile number.
std::string ProfileNodeName(int profileNumber);

// A profile's tree: a "GPSData" branch holding `gpsData` and an "EsData" branch holding
// `esData`, each only when not null (null: that stream is not present). Shared by reference.
NodeRef MakeProfileNode(const NodeRef& gpsData, const NodeRef& esData);

// Writes a .pmk while recording. Each profile tree is flushed as soon as it is written, so
// a crash loses at most the profile being written.
class PmkWriter {
public:
    PmkWriter() = default;
    PmkWriter(const PmkWriter&) = delete;
    PmkWriter& operator=(const PmkWriter&) = delete;
    ~PmkWriter();

    // Creates (replacing) the .pmk beside `dataPath` and writes the Settings tree, which it
    // also puts in `extraDataRoot` when that is not null (the root is cleared first). Failure
    // shows "Error - Unable to record to GPS and EchoSounder data file " followed by the
    // .pmk name and returns false; nothing stays open.
    bool CreatePmk(const std::string& dataPath, const PmkSettings& settings, UserPrompt& prompt,
                   const NodeRef& extraDataRoot = NodeRef());

    // Appends one profile's tree (see MakeProfileNode). Failure shows "Can not write output
    // file" once; later profiles are then not written, since the file is already broken.
    bool AppendProfile(const NodeRef& gpsData, const NodeRef& esData, UserPrompt& prompt);
    // Appends a profile tree made by the caller.
    bool AppendProfileNode(const NodeRef& profile, UserPrompt& prompt);

    bool IsOpen() const { return file_ != nullptr; }
    const std::string& Path() const { return path_; }
    void Close();

private:
    std::FILE* file_ = nullptr;
    std::string path_;
    bool failed_ = false;
};

// The .pmk side of a document: its extra-data root and what was read from the file.
struct PmkState {
    NodeRef extraDataRoot = NodeRef::MakeNew();
    PmkSettings settings;  // the current values, used as defaults when keys are missing
    bool loaded = false;
    int profileTrees = 0;  // Prf trees read whole
};

// Loads the .pmk beside `dataPath` into `state` once: returns 1 at once when already loaded,
// 0 when there is no .pmk (no GPS or echo sounder data), 1 after loading. The Settings tree
// fills `state.settings`; then "Prf1", "Prf2", ... are loaded until the first load that
// fails, which is how the end of the file is found: that last child stays, empty or in part.
// A Settings value that does not convert throws VariantConversionError.
int LoadPmk(const std::string& dataPath, PmkState& state);

// Reads only the Settings tree of the .pmk beside `dataPath` (the load dialog asks for
// EchoSounderPresent before a document exists). False when there is no .pmk; missing keys
// keep the values in `settings`.
bool ReadPmkSettings(const std::string& dataPath, PmkSettings& settings);

}  // namespace rm
