#pragma once
// Helpers shared by the data file tests: instrument records of a chosen shape, profiles with
// recognisable values, recordings written through CKvrData, scratch folders, whole files.

#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "data/kvr_data.h"

namespace rm::test {

struct InstrumentShape {
    int cells = 8;
    int beams = 3;
    uint8_t cpu = 170;
    bool pcMode = false;
    uint8_t bottomTrack = 0;
    bool ctd = false;
    bool extSensor = false;
    bool internalGps = false;
    uint8_t extPressure = 0;
    uint8_t waveInterval = 0;
    uint16_t waveLength = 0;
    uint16_t profileInterval = 1;
};

// Decoded records (raw images left empty) of a version 2 instrument of this shape, set on
// `data`, with a calibration block when the shape calls for one.
void SetInstrument(CKvrData& data, const InstrumentShape& shape);

// A profile of the layout's size whose fields all depend on `number`.
ProfileRecord MakeProfile(const ProfileLayout& layout, uint32_t number);
WaveBurst MakeWaveBurst(size_t sampleBytes, uint32_t number);

// Writes `count` profiles numbered from 1 (changed by `adjust` when given) and the wave bursts
// the setup places between them; returns the profiles.
std::vector<ProfileRecord> WriteRecording(const std::string& path, const InstrumentShape& shape, int count,
                                          const std::function<void(ProfileRecord&, int)>& adjust = {});

// A fresh empty folder, removed with its files when the object goes.
class ScratchDir {
public:
    ScratchDir();
    ~ScratchDir();
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;
    const std::string& path() const { return path_; }
    std::string File(const std::string& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

// An anonymous temporary file, removed when closed.
class TempFile {
public:
    TempFile() : file_(std::tmpfile()) {}
    ~TempFile() {
        if (file_) std::fclose(file_);
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    std::FILE* get() const { return file_; }
    // Writes `bytes` and goes back to the start.
    void Write(const std::vector<uint8_t>& bytes);
    // The whole content; the position is at the start afterwards.
    std::vector<uint8_t> ReadAll();

private:
    std::FILE* file_;
};

std::vector<uint8_t> ReadFileBytes(const std::string& path);
void WriteFileBytes(const std::string& path, const std::vector<uint8_t>& bytes);

}  // namespace rm::test
