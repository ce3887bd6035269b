// CKvrData: writing a data file. Every write failure of the file is told to the person as
// "Disk Full or Bad media writing to file:" with the path, and the write gives false.

#include <algorithm>

#include "data/data_file_name.h"
#include "data/kvr_data.h"
#include "data/user_prompt.h"

namespace rm {

namespace {
constexpr int kWrittenFileVersion = 2;
}

bool CKvrData::CreateDataFile(const std::string& path) {
    CloseFile();
    file_ = OpenNewDataFile(path, *prompt_);
    if (file_ == nullptr) return false;
    path_ = path;
    writable_ = true;
    layoutReady_ = false;  // a new file: nothing of it has been read
    writerReady_ = false;
    writeGpsDecided_ = false;
    bytesWritten_ = 0;
    return true;
}

void CKvrData::ReportWriteFailure() { prompt_->Message("Disk Full or Bad media writing to file:" + path_); }

bool CKvrData::WriteBytes(const uint8_t* data, size_t size) {
    readPosition_ = -1;
    if (std::fwrite(data, 1, size, file_) != size) {
        ReportWriteFailure();
        return false;
    }
    bytesWritten_ += static_cast<int64_t>(size);
    return true;
}

void CKvrData::ConfigureWriter() {
    // The writer always writes the current layout with a version 2 conf, and GPS in the
    // 48-byte form when the setup announces the internal GPS.
    UserSetup running = user;
    ApplyOperationLimits(conf, oper, running);
    const GpsForm gps = GpsFormFromFlags(0, conf, user);
    writeLayout_ = MakeProfileLayout(conf, running, gps, kWrittenFileVersion);
    writeWaves_ = MakeWaveSetup(user);
    writeBuffer_.assign(std::max<size_t>(writeLayout_.RecordSize(), static_cast<size_t>(writeWaves_.burstSize)), 0);
    writerReady_ = true;
    writeGpsDecided_ = false;
}

bool CKvrData::WriteHeader() {
    if (file_ == nullptr) return false;
    ConfigureWriter();
    const std::array<uint8_t, kConfSize> confImage = EncodeConf(conf);
    const std::array<uint8_t, kOperSize> operImage = EncodeOper(oper, conf);
    const std::array<uint8_t, kUserSize> userImage = EncodeUser(user, conf);
    if (!WriteBytes(confImage.data(), confImage.size())) return false;
    if (!WriteBytes(operImage.data(), operImage.size())) return false;
    if (!WriteBytes(userImage.data(), userImage.size())) return false;
    if (HasCalibrationBlock(conf, kWrittenFileVersion)) {
        // A block that was never fetched is written as zeros, so that the records stay where
        // the reader looks for them.
        std::vector<uint8_t> block(kCalibrationBlockSize, 0);
        std::copy_n(calibration.begin(), std::min(calibration.size(), block.size()), block.begin());
        if (!WriteBytes(block.data(), block.size())) return false;
    }
    return true;
}

bool CKvrData::WriteProfile(const ProfileRecord& record) {
    if (file_ == nullptr) return false;
    if (!writerReady_) ConfigureWriter();
    if (!writeGpsDecided_) {
        // A file carries GPS in every record or in none: the first record decides when the
        // setup does not.
        if (record.hasGps && writeLayout_.gps == GpsForm::None) writeLayout_.gps = GpsForm::Long48;
        writeBuffer_.resize(std::max(writeBuffer_.size(), writeLayout_.RecordSize()));
        writeGpsDecided_ = true;
    }
    if (!EncodeProfileRecord(record, writeLayout_, BlockOrder::File, writeBuffer_.data())) return false;
    return WriteBytes(writeBuffer_.data(), writeLayout_.RecordSize());
}

bool CKvrData::WaveBurstFollows(int64_t profilesWritten) const {
    const WaveSetup waves = writerReady_ ? writeWaves_ : MakeWaveSetup(user);
    if (!waves.HasBursts()) return false;
    const int64_t after = profilesWritten - waves.firstBurstIndex - 1;
    return after >= 0 && after % waves.interval == 0;
}

size_t CKvrData::WaveSampleBytes() const {
    const WaveSetup waves = writerReady_ ? writeWaves_ : MakeWaveSetup(user);
    return static_cast<size_t>(waves.burstSize) - kProfileHeaderSize - kChecksumSize;
}

bool CKvrData::WriteWaveBurst(const WaveBurst& burst) {
    if (file_ == nullptr) return false;
    if (!writerReady_) ConfigureWriter();
    if (!writeWaves_.HasBursts()) return false;
    const size_t size = static_cast<size_t>(writeWaves_.burstSize);
    if (!EncodeWaveBurst(burst, size - kProfileHeaderSize - kChecksumSize, writeBuffer_.data())) return false;
    return WriteBytes(writeBuffer_.data(), size);
}

}  // namespace rm
