#include "output/sum_file.h"

#include <cstdarg>
#include <cstdio>

#include "data/instrument_records.h"
#include "data/text_file.h"
#include "output/significant_digits.h"
#include "processing/processing_types.h"
#include "processing/settings_reader.h"

namespace rm {

namespace {

constexpr float kFeetPerMetre = 3.2808f;
constexpr double kCubicFeetPerCubicMetre = 35.313381820931106;  // the cube of the float 3.2808
constexpr float kFahrenheitPerCelsius = 1.8f;

class Text {
public:
    void Put(const std::string& s) { text_ += s; }
    void Printf(const char* format, ...) __attribute__((format(printf, 2, 3))) {
        char buffer[512];
        va_list args;
        va_start(args, format);
        std::vsnprintf(buffer, sizeof buffer, format, args);
        va_end(args);
        text_ += buffer;
    }
    std::string Take() { return std::move(text_); }

private:
    std::string text_;
};

const char* ReferenceText(int code) {
    switch (code) {
        case 0: return "KVR";
        case 1: return " BT";
        case 2: return "GPS";
        default: return "";
    }
}

const char* CoordinateText(int code) {
    switch (code) {
        case 0: return "BEAM";
        case 1: return "XYZ";
        case 2: return "ENU";
        default: return "";
    }
}

std::string DateText(const ProfileHeader& t) {
    char text[32];
    std::snprintf(text, sizeof text, "%02d/%02d/%d", t.day, t.month, t.year);
    return text;
}

std::string TimeText(const ProfileHeader& t) {
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d:%02d", t.hour, t.minute, t.second);
    return text;
}

struct Units {
    bool metric = true;
    double L = 1.0;
    double Q = 1.0;
    const char* length = " m";
    const char* discharge = " m^3/s";
    const char* speed = " m/s";
    char temperature = 'C';
};

Units UnitsOf(int unitSystem) {
    Units u;
    if (unitSystem == 1) return u;
    u.metric = false;
    u.L = static_cast<double>(kFeetPerMetre);
    u.Q = kCubicFeetPerCubicMetre;
    u.length = " ft";
    u.discharge = " ft^3/s";
    u.speed = " ft/s";
    u.temperature = 'F';
    return u;
}

double Temperature(double celsius, const Units& u) {
    return u.metric ? celsius : celsius * static_cast<double>(kFahrenheitPerCelsius) + 32.0;
}

void Header(Text& t, const SumFileInputs& in) {
    const CDischargeData& m = *in.measurement;
    t.Put("Quorle Ripplemark v4.50 Discharge Measurement Report");
    t.Put("\n--------------------------------------\n");
    t.Put("\nDate:                  " + DateText(m.startTime));
    t.Put("\nStart Time:              " + TimeText(m.startTime) + "         End Time:                " +
          TimeText(m.endTime));
    t.Put("\nKVR Data File:           " + in.dataFileStem + ".kvr");
    t.Put(std::string("\nSystem Frequency:            ") + FrequencyName(in.frequencyCode));
    t.Put("\nSerial #:                     " + in.serialNumber);
    t.Printf("         Firmware Ver:                 %3.1f", in.firmware * 0.1);
    t.Put(std::string("\nVelocity Ref:                 ") + ReferenceText(m.VelocityReference) +
          "         Track Ref:                    " + ReferenceText(m.TrackReference));
}

void UserSetupBlock(Text& t, const SumFileInputs& in, const Units& u) {
    t.Put("\n\n\nUser Setup Parameters\n---------------------");
    t.Printf("\nNumber of Cells:             %4d", in.numberOfCells);
    t.Printf(u.metric ? "         Cell Size:                  %5.2f m" : "         Cell Size:                  %5.2f ft",
             in.cellSizeCm * u.L * 0.01);
    t.Printf(u.metric ? "\nBlanking Distance:          %5.2f m" : "\nBlanking Distance:          %5.2f ft",
             in.blanking * u.L);
    if (in.transducerDepthFromSensor) {
        t.Put("       Transducer Depth:           Sensor");
    } else {
        t.Printf(u.metric ? "       Transducer Depth:           %5.2f m" : "       Transducer Depth:           %5.2f ft",
                 in.transducerDepth * u.L);
    }
    if (in.variableRange) {
        t.Printf(u.metric ? "\nProfiling Range:    %5.2f - %5.2f m" : "\nProfiling Range: %.2f - %.2f ft",
                 in.rangeStart * u.L, in.rangeEnd * u.L);
    } else {
        t.Printf(u.metric ? "\nProfiling Range:            %5.2f m" : "\nProfiling Range:           %5.2f ft",
                 in.rangeEnd * u.L);
    }
    t.Printf("\nAveraging Interval:         %6.1f s", in.averagingInterval);
    t.Put(std::string("\nCoordinate System:            ") + CoordinateText(in.coordinateSystem));
    t.Put(std::string("\nBottom Track:                 ") + (in.bottomTrack ? "Yes" : " No"));
    t.Printf("         Magnetic Declination:     %7.2f ", in.magneticDeclination);
    t.Put(std::string(1, kDegreeSign));
    if (in.temperature == TemperatureSource::Ctd) {
        t.Put("\nTemperature Mode:               CTD");
        t.Put("\nWater Salinity:                 CTD     Speed of Sound:                 CTD");
        return;
    }
    t.Put("\nTemperature Mode:        ");
    if (in.temperature == TemperatureSource::User) {
        t.Put("    User");
        const double celsius = in.userTemperatureTenths * 0.1;
        t.Printf("      Water Temperature: %5.2f", Temperature(celsius, u));
        t.Put(std::string(1, kDegreeSign) + u.temperature);
    } else {
        t.Put("Measured");
    }
    t.Printf("\nWater Salinity:           %7.2f ppt", in.salinity);
    t.Printf(u.metric ? "     Speed of Sound:           %7.2f m/s" : "     Speed of Sound:           %7.2f ft/s",
             in.speedOfSound * u.L);
}

// One fit line of the extrapolation block: a constant fit is named alone, a power fit with its
// exponent and the cells it uses. `bottomOfSeparate` names the power fit as the bottom line of
// separate top and bottom settings does.
void FitLine(Text& t, const FitChoice& fit, bool shared, bool bottomOfSeparate) {
    const double exponent = fit.exponent;
    const bool entire = fit.entireProfile;
    const int cells = fit.cells;
    if (fit.fitType != kFitTypePower) {
        t.Put("\nConstant distribution");
        return;
    }
    t.Printf(bottomOfSeparate ? "\nPower Fit distribution with an exponent of %5.3f "
                              : "\nPower Law with an exponent of %5.3f ",
             exponent);
    if (shared) {
        if (entire) {
            t.Put("using the entire profile ");
        } else {
            t.Printf("using the first/last %d cells", cells);
        }
    } else if (entire) {
        t.Put("using the entire profile data");
    } else {
        t.Printf("using the first %d cells", cells);
    }
}

void ExtrapolationBlock(Text& t, const SumFileInputs& in) {
    // Read as the computation reads it, so that the words describe what the pass did.
    const ExtrapolationChoice e = ReadExtrapolation(in.discharge.IsNull() ? NodeRef::MakeNew() : in.discharge);
    t.Put("\n\n\nProfile Extrapolation\n---------------------");
    if (e.sameTopBottom) {
        t.Put("\nSame Top and Bottom variables used in calculation");
        FitLine(t, e.top, true, false);
        return;
    }
    t.Put("\nTop variables used in calculation");
    FitLine(t, e.top, false, false);
    t.Put("\n\nBottom variables used in calculation");
    FitLine(t, e.bottom, false, true);
}

void EdgeMethod(Text& t, const NodeRef& d, const char* side, const Units& u) {
    const std::string s(side);
    const int method = d.GetTyped<int32_t>(s + "BankMethod", 2);
    if (method == 0) {
        t.Put("User Estimate: ");
        t.Put(u.metric ? "%7.1 m^3/s" : "%7.1 ft^3/s");
        return;
    }
    t.Put("Calculated: ");
    // The left side tests for method 0, which cannot hold here: a calculated left edge is
    // always described as sloped. The right side tests for the vertical code 1.
    const bool vertical = s == "Left" ? method == 0 : method == 1;
    if (vertical) {
        t.Put("with a Vertical Bank Shape");
    } else {
        t.Printf("with a Sloped (%5.3f) Bank Shape using %d profiles", d.GetTyped<double>(s + "BankSlope", 0.707),
                 d.GetTyped<int32_t>(s + "NumProfiles", 1));
    }
}

void EdgeBlock(Text& t, const SumFileInputs& in, const Units& u) {
    const NodeRef& d = in.discharge;
    t.Put("\n\n\nEdge Discharge Estimation\n-------------------------");
    t.Printf("\n\nDistance to left bank:                            %8.3f",
             d.GetTyped<double>("CorrectedLeftDistance", 0.0) * u.L);
    t.Put(u.length);
    t.Printf("\nProfile used for left discharge calculation:       %4d", d.GetTyped<int32_t>("LeftProfile", 1));
    t.Put("\nLeft Edge Method - ");
    EdgeMethod(t, d, "Left", u);
    t.Printf("\n\nDistance to right bank:                           %8.3f",
             d.GetTyped<double>("CorrectedRightDistance", 0.0) * u.L);
    t.Put(u.length);
    t.Printf("\nProfile used for right discharge calculation       %4d", d.GetTyped<int32_t>("RightProfile", 0));
    t.Put("\nRight Edge Method - ");
    EdgeMethod(t, d, "Right", u);
}

void DischargeBlock(Text& t, const SumFileInputs& in, const Units& u) {
    const CDischargeData& m = *in.measurement;
    const int S = in.significantDigits;
    t.Put("\n\n\nDischarge Summary\n-----------------");
    t.Put("\n\nMeasured Middle Portion Discharge:              ");
    t.Put(m.MiddleDischarge == MissingValueF ? std::string("--")
                                             : SignificantDigitsText(m.MiddleDischarge * u.Q, S));
    t.Put(u.discharge);
    const auto computed = [&](const char* label, float value) {
        t.Put(label);
        t.Put(ComputedDischargeFieldText(value == MissingValueF ? MissingValue : value * u.Q, S));
        t.Put(u.discharge);
    };
    computed("\nComputed Top Layer Discharge:                ", m.TopDischarge);
    computed("\nComputed Bottom Layer Discharge:             ", m.BottomDischarge);
    computed("\nComputed Left Edge Discharge:              ", m.LeftDischarge);
    computed("\nComputed Right Edge Discharge:                ", m.RightDischarge);
    t.Put("\n-----------------------------------------------------");
    computed("\nTotal Discharge:               ", m.TotalDischarge);
    t.Put("\n-----------------------------------------------------");
}

void StatisticsBlock(Text& t, const SumFileInputs& in, const Units& u) {
    const CDischargeData& m = *in.measurement;
    t.Put("\n\n\nStatistics\n----------");
    const double share = m.TotalDischarge == 0.0f ? 0.0 : m.MiddleDischarge * 100.0 / m.TotalDischarge;
    t.Printf("\n\nMeasured Discharge as a %% of Total:        %5.1f %%", share);
    t.Printf("\nMeasured Distance                       %8.2f", m.MadeGood * u.L);
    t.Put(u.length);
    t.Printf("\nMaximum Water Depth:                          %8.2f", m.MaxDepth * u.L);
    t.Put(u.length);
    t.Printf("\nMaximum Measured Depth-Averaged Velocity:        %8.1f", m.MaxMeanSpeed * u.L);
    t.Put(u.speed);
    t.Printf("\nMaximum Vessel Velocity:                %8.2f", m.MaxBoatSpeed * u.L);
    t.Put(u.speed);
    if (in.ctdPresent) {
        t.Printf("\nCTD Temperature Range:                %5.2f - %5.2f", Temperature(in.ctdTemperatureMin, u),
                 Temperature(in.ctdTemperatureMax, u));
        t.Put(std::string(1, kDegreeSign) + u.temperature);
        t.Printf("\nCTD Salinity Range:\t\t\t\t\t\t %7.2f - %7.2f ppt", in.ctdSalinityMin, in.ctdSalinityMax);
    }
    t.Put("\n\n\nRemarks\n-------");
    for (int i = 0; i < 3; ++i) t.Put("\n\n\n---------------------------------------------------------------");
}

}  // namespace

std::string ComputedDischargeFieldText(double value, int significantDigits) {
    if (value == MissingValue) return "--";
    const char code = static_cast<char>(significantDigits);
    if (code == '\0' || code == '%') return {};
    return std::string(1, code);
}

std::string SumFileText(const SumFileInputs& in) {
    if (in.measurement == nullptr) return {};
    const Units u = UnitsOf(in.unitSystem);
    Text t;
    Header(t, in);
    UserSetupBlock(t, in, u);
    ExtrapolationBlock(t, in);
    EdgeBlock(t, in, u);
    DischargeBlock(t, in, u);
    StatisticsBlock(t, in, u);
    return t.Take();
}

bool WriteSumFile(const std::string& path, const SumFileInputs& inputs) {
    TextFile file;
    if (!file.Open(path)) return false;
    file.Put(SumFileText(inputs));
    return file.Close();
}

}  // namespace rm
