#include "data/test_data_file_support.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace rm::test {

void SetInstrument(CKvrData& data, const InstrumentShape& s) {
    InstrumentConf& c = data.conf;
    c = InstrumentConf{};
    c.type = kConfType;
    c.version = 2;
    c.size = static_cast<uint16_t>(kConfSize);
    c.CPUSoftwareVerNum = s.cpu;
    c.SerialNumber = "K1234";
    c.KvrType = 5;
    c.Nbeams = static_cast<uint8_t>(s.beams);
    c.PressureInstalled = 1;
    c.ExtSensorInstalled = s.extSensor ? 1 : 0;
    c.ExtPressureSensorInstalled = s.extPressure;
    c.CtdSensorInstalled = s.ctd ? 1 : 0;
    c.InternalGpsAvailable = s.internalGps ? 1 : 0;

    data.oper = OperationRecord{};
    data.oper.type = 17;
    data.oper.size = static_cast<uint16_t>(kOperSize);
    data.oper.unwrapSamples = 100;  // an unwrapping limit for firmware that takes it from here

    UserSetup& u = data.user;
    u = UserSetup{};
    u.type = 18;
    u.size = static_cast<uint16_t>(kUserSize);
    u.DefaultSpeedOfSound = 14800;
    u.NumberOfCells = static_cast<uint16_t>(s.cells);
    u.CellSizeCm = 25.0f;
    u.BlankDistance = 20;
    u.ProfileInterval = s.profileInterval;
    u.DeploymentName = "RIVER";
    u.BottomTrack = s.bottomTrack;
    u.PressureTimeSeriesInterval = s.waveInterval;
    u.PseriesLength = s.waveLength;
    u.PCMode = s.pcMode ? 1 : 0;
    u.EnableInternalGps = s.internalGps ? 1 : 0;

    data.calibration.clear();
    if (HasCalibrationBlock(c, 2)) {
        for (size_t i = 0; i < kCalibrationBlockSize; ++i) data.calibration.push_back(static_cast<uint8_t>(i * 7 + 3));
    }
}

ProfileRecord MakeProfile(const ProfileLayout& layout, uint32_t number) {
    ProfileRecord p;
    p.Resize(layout.cells, layout.beams);
    for (size_t i = 0; i < p.header.raw.size(); ++i) p.header.raw[i] = static_cast<uint8_t>(0x30 + i + number);
    ProfileHeader& h = p.header;
    h.flags = 0x80;  // a flag bit that has nothing to do with GPS
    h.profileNumber = number;
    h.year = 2024;
    h.day = static_cast<uint8_t>(1 + number % 28);
    h.minute = static_cast<uint8_t>(number % 60);
    h.pingCount = layout.pulseCoherent ? 10u * (40 + number) : 40 + number;
    h.heading = static_cast<int16_t>(1800 + number);
    h.pressureHighByte = layout.pulseCoherent ? 3 : 0;

    p.hasShallowWater = layout.shallowWater;
    for (size_t i = 0; i < 32; ++i) p.shallowWater[i] = static_cast<uint8_t>(i + 2 * number);
    p.hasBottomTrack = layout.bottomTrack;
    for (size_t i = 0; i < p.bottomTrack.size(); ++i) p.bottomTrack[i] = static_cast<uint8_t>(100 + i + number);
    p.hasCtd = layout.ctd;
    p.ctd = {12.5f + static_cast<float>(number), 0.25f, 3.0f, 0.125f};
    p.hasExtSensor = layout.extSensor;
    p.extSensor = {static_cast<uint16_t>(1000 + number), 2000, 3000, 4000};
    p.hasGps = layout.gps != GpsForm::None;
    p.gps = {100000.0 + number, 47.5 + number * 1e-5, 8.25, 100001.0 + number, 47.5 + number * 2e-5, 8.26};
    for (int b = 0; b < layout.beams; ++b) {
        for (int c = 0; c < layout.cells; ++c) {
            // Gentle changes from cell to cell, well inside any unwrapping limit.
            p.Velocity(b, c) = static_cast<int16_t>(10 * b + c + static_cast<int>(number % 7));
            p.StdError(b, c) = static_cast<uint8_t>(b + 2 * c);
            p.Amplitude(b, c) = static_cast<uint8_t>(150 - c - static_cast<int>(number % 11));
        }
    }
    return p;
}

WaveBurst MakeWaveBurst(size_t sampleBytes, uint32_t number) {
    WaveBurst w;
    for (size_t i = 0; i < w.header.size(); ++i) w.header[i] = static_cast<uint8_t>(i ^ number);
    for (size_t i = 0; i < sampleBytes; ++i) w.samples.push_back(static_cast<uint8_t>(i * 13 + number));
    return w;
}

std::vector<ProfileRecord> WriteRecording(const std::string& path, const InstrumentShape& shape, int count,
                                          const std::function<void(ProfileRecord&, int)>& adjust) {
    CKvrData out;
    SetInstrument(out, shape);
    std::vector<ProfileRecord> written;
    if (!out.CreateDataFile(path) || !out.WriteHeader()) return written;
    for (int i = 0; i < count; ++i) {
        written.push_back(MakeProfile(out.WriteLayout(), static_cast<uint32_t>(i + 1)));
        if (adjust) adjust(written.back(), i);
        out.WriteProfile(written.back());
        if (out.WaveBurstFollows(i + 1)) out.WriteWaveBurst(MakeWaveBurst(out.WaveSampleBytes(), static_cast<uint32_t>(i)));
    }
    out.CloseFile();
    return written;
}

ScratchDir::ScratchDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "rm-datafile-XXXXXX").string();
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    const char* made = ::mkdtemp(buffer.data());
    path_ = made != nullptr ? made : "";
}

ScratchDir::~ScratchDir() {
    std::error_code ignored;
    if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
}

void TempFile::Write(const std::vector<uint8_t>& bytes) {
    std::fwrite(bytes.data(), 1, bytes.size(), file_);
    std::rewind(file_);
}

std::vector<uint8_t> TempFile::ReadAll() {
    std::rewind(file_);
    std::vector<uint8_t> bytes;
    for (int c = std::fgetc(file_); c != EOF; c = std::fgetc(file_)) bytes.push_back(static_cast<uint8_t>(c));
    std::rewind(file_);
    return bytes;
}

std::vector<uint8_t> ReadFileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteFileBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace rm::test
