#pragma once
// A hand-built measurement for the exchange file tests: every number chosen so that its text in
// the files can be worked out by hand.

#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "output/flow_data_sample.h"

namespace rm::test {

inline ProfileHeader HeaderAt(int year, int month, int day, int hour, int minute, int second) {
    ProfileHeader h;
    h.year = static_cast<int16_t>(year);
    h.month = static_cast<uint8_t>(month);
    h.day = static_cast<uint8_t>(day);
    h.hour = static_cast<uint8_t>(hour);
    h.minute = static_cast<uint8_t>(minute);
    h.second = static_cast<uint8_t>(second);
    return h;
}

// Settings: Discharge { UseShallowWaterPing 1, StartMeanHW 1.25, StartMeanTW 0.5, EndMeanHW 2,
// EndMeanTW 0.75 }. System: Conf { SystemFreq 1, SerialNumber "K1234" }.
struct FlowTestRecord {
    std::shared_ptr<CDischargeData> record = std::make_shared<CDischargeData>();
    NodeRef system = NodeRef::MakeNew();

    FlowTestRecord() {
        CDischargeData& r = *record;
        r.settings = NodeRef::MakeNew();
        NodeRef discharge = r.settings.GetOrCreateChild("Discharge");
        discharge.SetValue("UseShallowWaterPing", Variant(int32_t{1}));
        discharge.SetValue("StartMeanHW", Variant(1.25));
        discharge.SetValue("StartMeanTW", Variant(0.5));
        discharge.SetValue("EndMeanHW", Variant(2.0));
        discharge.SetValue("EndMeanTW", Variant(0.75));
        NodeRef conf = system.GetOrCreateChild("Conf");
        conf.SetValue("SystemFreq", Variant(uint8_t{1}));
        conf.SetValue("SerialNumber", Variant("K1234"));

        r.fileName = "/data/river/T001.kvr";
        r.Active = 1;
        r.startTime = HeaderAt(2024, 3, 15, 10, 30, 0);
        r.endTime = HeaderAt(2024, 3, 15, 10, 31, 39);
        r.Interval = 1.0;
        r.ProfileCount = 100;
        r.TrackReference = 1;
        r.VelocityReference = 2;
        r.DepthReference = 0;
        r.ShallowWaterPing = 1;
        r.TrackLength = 123.5;
        r.LeftDistance = 2.5f;
        r.MadeGood = 50.25f;
        r.RightDistance = 3.0f;
        r.TotalWidth = 1234.567f;  // nearest float 1234.5670166015625
        r.Area = 100.125;
        r.MeanVelocity = 0.5;
        r.TopDischarge = 1.5f;
        r.MiddleDischarge = 10.3f;  // nearest float 10.300000190734863
        r.BottomDischarge = 2.0f;
        r.LeftDischarge = 0.125f;
        r.RightDischarge = 0.25f;
        r.TotalDischarge = -14.25f;
    }

    FlowMeasurement Measurement() const {
        FlowMeasurement m;
        m.fileName = "T001.kvr";
        m.filePath = "/data/river/";
        m.record = record.get();
        m.system = system;
        m.hasSource = true;
        return m;
    }
};

// The sample rows of the exchange files with the .fdx value text of FlowTestRecord, by hand:
// the start 15/03/2024 10:30:00 is day 45366 after 30/12/1899 and 10.5 h = 0.4375 day (the Time
// row, null here, has its own two attributes); the end 99 s later plus one 1 s interval gives
// 100 s = 0.0011574074 day; Width is the float nearest 1234.567, 1234.5670166015625.
struct HandRow {
    const char *name, *unit, *type, *fdxValue;
};
inline const std::vector<HandRow>& HandSampleRows() {
    static const std::vector<HandRow> rows{
        {"SampleNumber", "", "LONG", "1"},          {"Time", "", "VariantDate", nullptr},
        {"Duration", "", "DOUBLE", "0.0011574074"}, {"NumberOfProfiles", "", "LONG", "100"},
        {"TrackReference", "", "BYTE", "1"},        {"VelocityReference", "", "BYTE", "2"},
        {"DepthReference", "", "BYTE", "0"},        {"UseSwPing", "", "BYTE", "1"},
        {"StartMeanHW", "m", "DOUBLE", "1.25000"},  {"StartMeanTW", "m", "DOUBLE", "0.50000"},
        {"EndMeanHW", "m", "DOUBLE", "2.00000"},    {"EndMeanTW", "m", "DOUBLE", "0.75000"},
        {"TrackDistance", "m", "DOUBLE", "123.50000"}, {"LeftDistance", "m", "DOUBLE", "2.50000"},
        {"DMG", "m", "DOUBLE", "50.25000"},         {"RightDistance", "m", "DOUBLE", "3.00000"},
        {"Width", "m", "DOUBLE", "1234.56702"},     {"Stage", "m", "DOUBLE", "0.00000"},
        {"Area", "m2", "DOUBLE", "100.12500"},      {"MeanVelocity", "m/s", "DOUBLE", "0.50000"},
        {"TopDischarge", "cms", "DOUBLE", "1.50000"}, {"MiddleDischarge", "cms", "DOUBLE", "10.30000"},
        {"BottomDischarge", "cms", "DOUBLE", "2.00000"}, {"LeftDischarge", "cms", "DOUBLE", "0.12500"},
        {"RightDischarge", "cms", "DOUBLE", "0.25000"}, {"TotalDischarge", "cms", "DOUBLE", "-14.25000"},
    };
    return rows;
}

// The bytes that `write` puts into a temporary file; a failed write fails the calling test.
inline std::string WrittenBytes(const std::function<bool(std::FILE*)>& write) {
    std::FILE* file = std::tmpfile();
    if (file == nullptr) {
        ADD_FAILURE() << "no temporary file";
        return {};
    }
    EXPECT_TRUE(write(file));
    std::rewind(file);
    std::string bytes;
    char buffer[4096];
    for (size_t got; (got = std::fread(buffer, 1, sizeof buffer, file)) > 0;) bytes.append(buffer, got);
    std::fclose(file);
    return bytes;
}

}  // namespace rm::test
