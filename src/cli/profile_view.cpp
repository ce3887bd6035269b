#include "cli/profile_view.h"

#include "cli/file_info.h"
#include "data/byte_io.h"

namespace rm::cli {

namespace {

BottomTrackView ReadBottomTrack(const ProfileRecord& record) {
    const ByteReader in(record.bottomTrack.data(), record.bottomTrack.size());
    BottomTrackView view;
    view.flag = in.u8(1);
    for (size_t b = 0; b < 4; ++b) {
        view.rangesCm[b] = in.u16(2 + 2 * b);
        view.velocities[b] = in.i16(10 + 2 * b);
    }
    return view;
}

ShallowWaterView ReadShallowWater(const ProfileRecord& record) {
    const ByteReader in(record.shallowWater.data(), record.shallowWater.size());
    ShallowWaterView view;
    for (size_t w = 0; w < view.words.size(); ++w) view.words[w] = in.u16(2 * w);
    view.referenceStartCm = in.u16(4) * 0.1;
    view.referenceLengthCm = in.u16(6) * 0.1;
    for (size_t b = 0; b < 4; ++b) {
        view.references[b] = in.i16(24 + 2 * b);
        view.counts[b] = in.u8(32 + b);
    }
    return view;
}

void FillArrays(const ProfileRecord& record, ProfileView& view) {
    // The record's own sizes bound the walk, so a record sized otherwise than the file's
    // layout can never be read past its arrays.
    const size_t expected = static_cast<size_t>(record.cells) * static_cast<size_t>(record.beams);
    const bool sized = record.cells > 0 && record.beams > 0 && record.velocity.size() >= expected &&
                       record.stdError.size() >= expected && record.amplitude.size() >= expected;
    view.cells = sized ? record.cells : 0;
    view.beams = sized ? record.beams : 0;
    for (int b = 0; b < view.beams; ++b) {
        std::vector<int16_t> raw;
        std::vector<std::optional<double>> scaled;
        std::vector<int> stdError, amplitude;
        for (int c = 0; c < view.cells; ++c) {
            const int16_t v = record.Velocity(b, c);
            raw.push_back(v);
            scaled.push_back(IsBadVelocity(v, view.velocityScale) ? std::nullopt
                                                                  : std::optional<double>(v * 0.1 * view.velocityScale));
            stdError.push_back(record.StdError(b, c));
            amplitude.push_back(record.Amplitude(b, c));
        }
        view.velocityRaw.push_back(std::move(raw));
        view.velocityCmPerS.push_back(std::move(scaled));
        view.stdError.push_back(std::move(stdError));
        view.amplitude.push_back(std::move(amplitude));
    }
}

}  // namespace

bool IsBadVelocity(int16_t raw, double velocityScale) {
    return raw == kBadVelocity || (velocityScale != 1.0 && raw == kUnwrapBadVelocity);
}

ProfileView MakeProfileView(const CKvrData& data, const ProfileRecord& record, int number, int readResult) {
    const ProfileHeader& h = record.header;
    ProfileView view;
    view.number = number;
    view.readResult = readResult;
    view.type = h.type;
    view.flags = h.flags;
    view.size = h.size;
    view.profileNumber = h.profileNumber;
    view.time = FormatProfileTime(TimeOfHeader(h));
    view.hundredths = h.hundredths;
    view.pingCount = h.pingCount;
    view.word38 = h.word38;
    view.headingDeg = h.heading * 0.1;
    view.pitchDeg = h.pitch * 0.1;
    view.rollDeg = h.roll * 0.1;
    view.sdHeadingDeg = h.sdHeading * 0.1;
    view.sdPitchDeg = h.sdPitch * 0.1;
    view.sdRollDeg = h.sdRoll * 0.1;
    view.sdFourth = h.sdFourth * 0.1;
    view.temperatureDegC = h.temperature * 0.01;
    view.pressureCounts = h.pressureCounts;
    view.pressureHighByte = h.pressureHighByte;
    view.pressureDbar =
        PressureFromCounts(data.conf, data.user, data.derived, h.pressureCounts, h.pressureHighByte, h.temperature);
    view.pressure2Counts = h.pressure2Counts;
    view.word56 = h.word56 * 0.1;
    view.inputVoltage = h.inputVoltage * 0.2;

    if (record.hasGps) view.gps = record.gps;
    if (record.hasBottomTrack) view.bottomTrack = ReadBottomTrack(record);
    if (record.hasCtd) view.ctd = record.ctd;
    if (record.hasExtSensor) view.extSensor = record.extSensor;
    if (record.hasShallowWater) view.shallowWater = ReadShallowWater(record);

    // The same velocity scale as the document uses: 0.1 where the shallow-water block is in use
    // on firmware from 16.5 on, whose velocities come in tenths of the normal resolution.
    view.velocityScale = data.derived.documentShallowWaterVelocityFactor;
    FillArrays(record, view);
    return view;
}

}  // namespace rm::cli
