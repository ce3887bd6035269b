// CKvrData: the file, validation, the head of the file and the record counts.

#include "data/kvr_data.h"

#include <algorithm>
#include <cstdint>

#include "data/user_prompt.h"

namespace rm {

namespace {

constexpr size_t kReadBufferSize = 64 * 1024;

StderrPrompt& DefaultPrompt() {
    static StderrPrompt prompt;
    return prompt;
}

}  // namespace

ProfileTime TimeOfHeader(const ProfileHeader& h) {
    ProfileTime t;
    t.year = h.year;
    t.month = h.month;
    t.day = h.day;
    t.hour = h.hour;
    t.minute = h.minute;
    t.second = h.second;
    t.hundredths = h.hundredths;
    return t;
}

CKvrData::CKvrData() : prompt_(&DefaultPrompt()), slots_(static_cast<size_t>(kDefaultCacheCapacity)) {}

CKvrData::~CKvrData() { CloseFile(); }

void CKvrData::SetPrompt(UserPrompt* prompt) { prompt_ = prompt != nullptr ? prompt : &DefaultPrompt(); }

bool CKvrData::OpenFile(const std::string& path) {
    CloseFile();
    // Playback may reopen the same file for every record: its layout stays known. Another
    // file must have its head read first.
    if (path != path_) layoutReady_ = false;
    file_ = std::fopen(path.c_str(), "rb");
    if (file_ == nullptr) return false;
    // A larger buffer lets a seek to the next record stay inside what was read before.
    std::setvbuf(file_, nullptr, _IOFBF, kReadBufferSize);
    path_ = path;
    writable_ = false;
    return true;
}

bool CKvrData::OpenForAppend(const std::string& path) {
    CloseFile();
    if (path != path_) layoutReady_ = false;
    file_ = std::fopen(path.c_str(), "r+b");
    if (file_ == nullptr || fseeko(file_, 0, SEEK_END) != 0) {
        if (file_ != nullptr) std::fclose(file_);
        file_ = nullptr;
        prompt_->Message("Error opening file: " + path);
        return false;
    }
    path_ = path;
    writable_ = true;
    return true;
}

bool CKvrData::CloseFile() {
    readPosition_ = -1;
    if (file_ == nullptr) return true;
    const bool ok = std::fclose(file_) == 0;
    file_ = nullptr;
    if (!ok && writable_) {
        ReportWriteFailure();
        return false;
    }
    return true;
}

int CKvrData::Validate() {
    if (file_ == nullptr) return 1;
    uint8_t head[kConfSize] = {};
    size_t got = 0;
    if (fseeko(file_, 0, SEEK_SET) == 0) got = std::fread(head, 1, sizeof head, file_);
    const bool valid = ConfHeaderIsValid(head, got);
    readPosition_ = fseeko(file_, 0, SEEK_SET) == 0 ? 0 : -1;
    return valid ? 0 : 1;
}

bool CKvrData::ReadExact(int64_t offset, uint8_t* buffer, size_t size) {
    if (file_ == nullptr || offset < 0) return false;
    if (offset != readPosition_ && fseeko(file_, static_cast<off_t>(offset), SEEK_SET) != 0) {
        readPosition_ = -1;
        return false;
    }
    if (std::fread(buffer, 1, size, file_) != size) {
        readPosition_ = -1;
        return false;
    }
    readPosition_ = offset + static_cast<int64_t>(size);
    return true;
}

int64_t CKvrData::CurrentFileSize() {
    readPosition_ = -1;
    if (file_ == nullptr || fseeko(file_, 0, SEEK_END) != 0) return 0;
    const off_t end = ftello(file_);
    return end < 0 ? 0 : static_cast<int64_t>(end);
}

int CKvrData::ReadRecords() {
    uint8_t head[kRecordHeaderSize];
    if (!ReadExact(0, head, sizeof head)) return kReadError;
    const size_t confSize = ConfSizeForVersion(head[1]);
    if (confSize == 0) return kReadBadRecords;

    std::vector<uint8_t> image(confSize);
    if (!ReadExact(0, image.data(), confSize)) return kReadError;
    InstrumentConf newConf;
    const RecordStatus confStatus = DecodeConf(image.data(), image.size(), newConf);
    if (confStatus == RecordStatus::Short) return kReadError;
    if (confStatus != RecordStatus::Ok) return kReadBadRecords;

    uint8_t operImage[kOperSize];
    uint8_t userImage[kUserSize];
    int64_t at = static_cast<int64_t>(confSize);
    if (!ReadExact(at, operImage, kOperSize)) return kReadError;
    at += static_cast<int64_t>(kOperSize);
    if (!ReadExact(at, userImage, kUserSize)) return kReadError;
    at += static_cast<int64_t>(kUserSize);

    OperationRecord newOper;
    UserSetup newUser;
    if (DecodeOper(operImage, kOperSize, newConf, newOper) != RecordStatus::Ok) return kReadBadRecords;
    if (DecodeUser(userImage, kUserSize, newConf, newUser) != RecordStatus::Ok) return kReadBadRecords;

    fileVersion_ = std::max<int>(1, newConf.version);
    std::vector<uint8_t> newCalibration;
    if (HasCalibrationBlock(newConf, fileVersion_)) {
        newCalibration.resize(kCalibrationBlockSize);
        if (!ReadExact(at, newCalibration.data(), kCalibrationBlockSize)) return kReadError;
    }
    conf = std::move(newConf);
    oper = newOper;
    user = std::move(newUser);
    calibration = std::move(newCalibration);
    derived = DeriveValues(conf, oper, user);
    return kReadOk;
}

int CKvrData::ComputeLayout() {
    layoutReady_ = false;
    headerLength_ = HeaderLength(conf, fileVersion_);
    fileSize_ = CurrentFileSize();

    // The GPS form is told by the flags of the first profile header, when there is one.
    uint8_t flags = 0;
    uint8_t firstTwo[2] = {};
    if (fileSize_ >= headerLength_ + 2 && ReadExact(headerLength_, firstTwo, 2)) flags = firstTwo[1];

    // Records follow the setup as the instrument ran it: the operation limits may have turned
    // bottom tracking off.
    UserSetup running = user;
    ApplyOperationLimits(conf, oper, running);
    layout_ = MakeProfileLayout(conf, running, GpsFormFromFlags(flags, conf, user), fileVersion_);
    waves_ = MakeWaveSetup(user);
    if (layout_.cells < 1 || layout_.cells > kCacheMaxCells || layout_.beams < 1 || layout_.beams > kCacheMaxBeams) {
        return kReadBadLayout;
    }
    recordBuffer_.assign(std::max<size_t>(layout_.RecordSize(), static_cast<size_t>(waves_.burstSize)), 0);
    AllocateSlots();
    layoutReady_ = true;
    return kReadOk;
}

int CKvrData::CountRecordsInFile() {
    if (file_ == nullptr || !layoutReady_) return kReadError;
    fileSize_ = CurrentFileSize();
    const RecordCounts counts = CountRecords(fileSize_, headerLength_, RecordSize(), waves_);
    profileCount_ = static_cast<int>(std::min<int64_t>(counts.profiles, INT32_MAX));
    burstCount_ = static_cast<int>(std::min<int64_t>(counts.bursts, INT32_MAX));
    return kReadOk;
}

int CKvrData::ReadHeaderAt(int index, ProfileHeader& header) {
    if (!layoutReady_) return kReadError;
    uint8_t image[kProfileHeaderSize];
    if (!ReadExact(ProfilePosition(index), image, sizeof image)) return kReadError;
    DecodeProfileHeader(image, layout_, header);
    return kReadOk;
}

int CKvrData::ReadHeader(bool loadWaves) {
    if (file_ == nullptr) return kReadError;
    profileCount_ = 0;
    burstCount_ = 0;
    layoutReady_ = false;
    int result = ReadRecords();
    if (result == kReadOk) result = ComputeLayout();
    if (result != kReadOk) return result;
    CountRecordsInFile();
    firstHeader_ = ProfileHeader{};
    lastHeader_ = ProfileHeader{};
    firstBurst_ = WaveBurst{};
    if (profileCount_ > 0) {
        if (ReadHeaderAt(0, firstHeader_) != kReadOk) return kReadError;
        if (ReadHeaderAt(profileCount_ - 1, lastHeader_) != kReadOk) return kReadError;
    }
    if (loadWaves && burstCount_ > 0) {
        const int burst = ReadWaveBurst(0, firstBurst_);
        if (burst == kReadError) return kReadError;
    }
    return kReadOk;
}

int CKvrData::ReadInitial(int index) {
    if (file_ == nullptr) return kReadError;
    layoutReady_ = false;
    int result = ReadRecords();
    if (result == kReadOk) result = ComputeLayout();
    if (result != kReadOk) return result;
    if (index < 0) return kReadOutOfRange;
    if (ReadHeaderAt(0, firstHeader_) != kReadOk) return kReadError;
    return ReadHeaderAt(index, lastHeader_);
}

int64_t CKvrData::ProfilePosition(int index) const {
    return ProfileOffset(index, headerLength_, RecordSize(), waves_);
}

int64_t CKvrData::ProfilePositionWithoutBursts(int index) const {
    return ProfileOffsetWithoutBursts(index, headerLength_, RecordSize());
}

int CKvrData::ReadWaveBurst(int burst, WaveBurst& out) {
    if (file_ == nullptr || !layoutReady_) return kReadError;
    if (!waves_.HasBursts() || burst < 0) return kReadOutOfRange;
    const size_t size = static_cast<size_t>(waves_.burstSize);
    if (recordBuffer_.size() < size) recordBuffer_.resize(size);
    if (!ReadExact(BurstOffset(burst, headerLength_, RecordSize(), waves_), recordBuffer_.data(), size)) {
        return kReadError;
    }
    const DecodeResult r = DecodeWaveBurst(recordBuffer_.data(), size - kProfileHeaderSize - kChecksumSize, out);
    return r == DecodeResult::Ok ? kReadOk : kReadBadChecksum;
}

}  // namespace rm
