// LiveAcquisition: reading one frame off the instrument's line. Nothing in a frame says how
// long it is: it is found by its sync byte, its type and the low byte of its header size, and
// read to the length the setup gives. Its profile number repairs the count over lost frames
// and tells when the instrument has started counting again.

#include <cstring>
#include <limits>

#include "data/bottom_track_block.h"
#include "data/byte_io.h"
#include "link/live_acquisition.h"
#include "link/profile_sizes.h"

namespace rm {

namespace {
constexpr uint32_t kByteLimitMs = 500;
constexpr uint32_t kWaitStepMs = 5;
constexpr int kHeaderWaitRounds = 100;
constexpr int kBodyWaitRounds = 1500;
constexpr int kWaveBodyWaitRounds = 200;
constexpr int kHeaderRest = static_cast<int>(kProfileHeaderSize) - 3;
constexpr size_t kScrapLimit = 80;
constexpr size_t kHeadingOffset = 40;
constexpr size_t kPitchOffset = 42;
constexpr size_t kRollOffset = 44;
constexpr size_t kProfileNumberOffset = 14;
}  // namespace

bool LiveAcquisition::WaitForBytes(int count, int rounds) {
    for (int i = 0; i < rounds; ++i) {
        if (instrument_->RxCount() >= count) return true;
        instrument_->SleepMs(kWaitStepMs);
    }
    return instrument_->RxCount() >= count;
}

int LiveAcquisition::ReadFrame() {
    // One lone byte is never worked on, and the reader is never entered twice.
    if (readerBusy_ || instrument_ == nullptr || instrument_->RxCount() == 1) {
        readerBusy_ = false;
        return kFrameNothing;
    }
    readerBusy_ = true;
    scrap_.clear();
    bool synced = false;
    for (int i = 0; i < link_.Sizes.ProfileSize; ++i) {
        const int c = instrument_->ReadChar();
        if (c < 0) break;
        if (c == kFrameSync) {
            synced = true;
            break;
        }
        if (scrap_.size() < kScrapLimit) scrap_.push_back(static_cast<uint8_t>(c));
    }
    if (!synced) {
        readerBusy_ = false;
        return kFrameNothing;
    }
    int result = kFrameNothing;
    const int type = instrument_->ReadCharTimed(kByteLimitMs);
    if (type == kProfileFrameType) {
        if (instrument_->ReadCharTimed(kByteLimitMs) == kFrameHeaderSizeByte) result = ReadProfileFrame();
    } else if (type == kWaveFrameType) {
        if (instrument_->ReadCharTimed(kByteLimitMs) == kFrameHeaderSizeByte) result = ReadWaveFrame();
    } else {
        result = kFrameUnknown;
    }
    readerBusy_ = false;
    if (result < 1) FillBadProfile();
    return result;
}

int LiveAcquisition::ReadProfileFrame() {
    const int bodySize = link_.Sizes.ProfileSize - static_cast<int>(kProfileHeaderSize);
    frame_[0] = kFrameSync;
    frame_[1] = kProfileFrameType;
    frame_[2] = kFrameHeaderSizeByte;
    if (!WaitForBytes(kHeaderRest + 2, kHeaderWaitRounds)) {
        ++profileCount_;
        return kFrameNothing;
    }
    const bool headerRead = instrument_->ReadBufferTimed(frame_.data() + 3, kHeaderRest, kByteLimitMs) == kHeaderRest;
    ++profileCount_;
    if (!headerRead || !WaitForBytes(bodySize, kBodyWaitRounds)) return kFrameNothing;
    if (instrument_->ReadBufferTimed(frame_.data() + kProfileHeaderSize, bodySize, kByteLimitMs) != bodySize)
        return kFrameNothing;

    // Nothing of the frame is believed before its checks pass: one bit wrong in the profile
    // number would otherwise move the count, or restart it.
    const ByteReader reader(frame_.data(), frame_.size());
    if (reader.u16(2) != kProfileHeaderSize) return kFrameNothing;
    const size_t checked = frame_.size() - kChecksumSize;
    if (RecordChecksum(frame_.data(), checked) != reader.u16(checked)) return kFrameNothing;
    const uint32_t number = reader.u32(kProfileNumberOffset);
    if (!TakeProfileNumber(number)) return kFrameNothing;

    DecodeProfileRecord(frame_.data(), frameLayout_, BlockOrder::Frame, false, CurrentRecord());
    HoldBadBottomTrack();
    lastProfileNumber_ = static_cast<int>(number);
    return kFrameProfile;
}

bool LiveAcquisition::TakeProfileNumber(uint32_t number) {
    // The instrument numbers from 1; a number the count cannot hold is not taken.
    if (number == 0 || number > static_cast<uint32_t>(std::numeric_limits<int>::max())) return false;
    const int64_t expected = static_cast<int64_t>(profileNumberOffset_) + profileCount_;
    if (number == expected) return true;
    // Number 1, or any number not above the one at the start of the recording (its frame 1 was
    // lost), means the instrument has started counting again.
    if (profileCount_ > 0 && (number == 1 || number <= static_cast<uint32_t>(profileNumberOffset_))) Renumber();
    // A lost frame leaves a gap in the numbers that the count jumps over.
    profileCount_ = static_cast<int>(number) - profileNumberOffset_;
    return true;
}

int LiveAcquisition::ReadWaveFrame() {
    const int samples = link_.Sizes.WaveSamples;
    const int body = kWaveSampleSize * samples + static_cast<int>(kChecksumSize);
    std::vector<uint8_t> bytes(kProfileHeaderSize + static_cast<size_t>(body));
    bytes[0] = kFrameSync;
    bytes[1] = kWaveFrameType;
    bytes[2] = kFrameHeaderSizeByte;
    int result = kFrameNothing;
    if (samples > 0 && WaitForBytes(3, kHeaderWaitRounds) &&
        instrument_->ReadBufferTimed(bytes.data() + 3, kHeaderRest, kByteLimitMs) == kHeaderRest &&
        WaitForBytes(body, kWaveBodyWaitRounds) &&
        instrument_->ReadBufferTimed(bytes.data() + kProfileHeaderSize, body, kByteLimitMs) == body) {
        const ByteReader reader(bytes.data(), bytes.size());
        if (reader.u16(2) != kProfileHeaderSize) {
            result = kFrameUnknown;
        } else if (DecodeWaveBurst(bytes.data(), static_cast<size_t>(kWaveSampleSize * samples), wave_) ==
                   DecodeResult::Ok) {
            result = kFrameWave;
        }
    }
    if (result < 1 && profileCount_ > 0) wave_.header.fill(0);
    return result;
}

void LiveAcquisition::HoldBadBottomTrack() {
    if (link_.BottomTrackMode == 0) return;
    // The previous profile's slot, unless the ring is a single slot (then it is this one).
    const ProfileRecord* previous = profileCount_ > 1 && RingSize() > 1 ? &Record(profileCount_ - 1) : nullptr;
    rm::HoldBadBottomTrack(CurrentRecord(), previous, devices_.numBadBeams);
}

void LiveAcquisition::FillBadProfile() {
    if (profileCount_ <= 0) return;
    ProfileRecord& record = CurrentRecord();
    record.header = ProfileHeader{};
    record.header.heading = record.header.pitch = record.header.roll = kBadVelocity;
    ByteWriter header(record.header.raw.data(), record.header.raw.size());
    header.i16(kHeadingOffset, kBadVelocity);
    header.i16(kPitchOffset, kBadVelocity);
    header.i16(kRollOffset, kBadVelocity);
    if (link_.GpsOn) {
        const GpsFix& p = lastFix_;
        record.gps = GpsBlock{p.Time, p.Latitude, p.Longitude, p.Time, p.Latitude, p.Longitude};
    }
    if (link_.BottomTrackMode != 0) {
        ByteWriter bt(record.bottomTrack.data(), record.bottomTrack.size());
        bt.u8(0, 0);
        bt.u8(1, 0);
        for (size_t beam = 0; beam < 4; ++beam) {
            bt.u16(2 + 2 * beam, static_cast<uint16_t>(kBadVelocity));
            bt.i16(10 + 2 * beam, 0);
        }
    }
    if (link_.BottomTrackMode == 2) {
        ByteWriter sw(record.shallowWater.data(), record.shallowWater.size());
        for (size_t beam = 0; beam < 4; ++beam) sw.i16(12 + 2 * beam, kBadVelocity);
    }
}

void LiveAcquisition::Renumber() {
    // The instrument has restarted its numbering: the number at the start is forgotten, the
    // stored positions become unknown, and the data file goes on.
    profileNumberOffset_ = 0;
    ++renumberings_;
    lastFix_ = GpsFix{};
    lastFix_.Latitude = lastFix_.Longitude = kPositionSentinel;
    firstPosition_ = GpsFix{};
    firstPosition_.Latitude = firstPosition_.Longitude = kPositionSentinel;
    if (renumbered_) renumbered_();
}

}  // namespace rm
