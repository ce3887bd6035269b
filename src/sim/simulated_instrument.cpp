#include "sim/simulated_instrument.h"

#include <cmath>
#include <cstdio>

#include "sim/geo_offset.h"
#include "sim/nmea_output.h"

namespace rm::sim {

namespace {
constexpr uint8_t kBreakByte = 0x00;
constexpr size_t kLongestLine = 200;  // a longer command line is cut, as the instrument's buffer is
}  // namespace

SimulatedInstrument::SimulatedInstrument(const RiverScenario& scenario, const InstrumentBehaviour& behaviour)
    : scenario_(scenario), behaviour_(behaviour) {
    // No file is written, but the scenario's checks want the name of one.
    if (scenario_.outputPath.empty()) scenario_.outputPath = "live.kvr";
    defaults_ = BuildInstrumentRecords(scenario_);
    defaults_.conf.SensorOrientation = static_cast<uint8_t>(behaviour_.orientation);
    records_ = defaults_;
    mode_ = behaviour_.startAsleep ? Mode::Asleep : Mode::Prompt;
}

void SimulatedInstrument::Receive(const uint8_t* data, size_t size, double nowS) {
    Advance(nowS);
    for (size_t i = 0; i < size; ++i) {
        const uint8_t byte = data[i];
        if (behaviour_.silent) continue;
        if (byte == kBreakByte && mode_ != Mode::Loading) {
            Break();
            continue;
        }
        switch (mode_) {
            case Mode::Asleep: break;
            case Mode::Prompt: OnPromptByte(byte, nowS); break;
            case Mode::Loading: OnLoadByte(byte); break;
            case Mode::Collecting: OnCollectingByte(byte); break;
            case Mode::Listing: break;
        }
    }
}

void SimulatedInstrument::OnPromptByte(uint8_t byte, double nowS) {
    const char c = static_cast<char>(byte);
    if (c == '\n') return;
    if (behaviour_.echo) Emit(std::string(1, c));
    if (c == '\r') {
        const std::string line = line_;
        line_.clear();
        Execute(line, nowS);
        return;
    }
    if (c == ' ' && line_.empty()) {
        // A blank on an empty line asks for a fresh prompt, as the wake-up does.
        Emit("\r\n>");
        return;
    }
    if (line_.size() < kLongestLine) line_.push_back(c);
}

void SimulatedInstrument::OnLoadByte(uint8_t byte) {
    loadBytes_.push_back(static_cast<char>(byte));
    if (loadBytes_.size() < 2) return;
    const size_t length = static_cast<uint8_t>(loadBytes_[0]) | (static_cast<uint8_t>(loadBytes_[1]) << 8);
    if (loadBytes_.size() >= length || length < 4) FinishLoad();
}

void SimulatedInstrument::OnCollectingByte(uint8_t byte) {
    // Not echoed while collecting; a whole line "Stop" ends the collection.
    const char c = static_cast<char>(byte);
    if (c == '\r') {
        std::string word;
        for (char ch : line_) word.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(ch))));
        line_.clear();
        if (word == "stop") {
            EndCollection();
            AnswerOk("Data collection stopped");
        }
        return;
    }
    if (c != '\n' && line_.size() < kLongestLine) line_.push_back(c);
}

void SimulatedInstrument::Break() {
    if (mode_ == Mode::Collecting) EndCollection();
    mode_ = Mode::Prompt;
    listingKind_ = 0;
    nextListingS_ = std::numeric_limits<double>::infinity();
    line_.clear();
    loadBytes_.clear();
    Emit(BreakBanner(behaviour_.family, records_.conf.CPUSoftwareVerNum, records_.conf.SerialNumber) + ">");
}

void SimulatedInstrument::Answer(std::initializer_list<std::string> lines) {
    std::string text = "\r\n";
    for (const std::string& line : lines) text += line + "\r\n";
    Emit(text + ">");
}

void SimulatedInstrument::AnswerOk(const std::string& line) {
    // The acknowledgement stands on the first line: a caller may read only one.
    Answer({line.empty() ? std::string("OK") : "OK " + line});
}

void SimulatedInstrument::AnswerError(const std::string& why) { Answer({"ERROR: " + why}); }

void SimulatedInstrument::Advance(double nowS) {
    if (mode_ == Mode::Loading && nowS >= loadDeadlineS_) {
        mode_ = Mode::Prompt;
        loadBytes_.clear();
        AnswerError("timeout waiting for the record");
    }
    while (mode_ == Mode::Collecting && nowS >= nextFrameS_) {
        std::string frame;
        if (!transect_->Next(frame)) {
            // All profiles made: the instrument keeps collecting but has nothing more to say.
            nextFrameS_ = std::numeric_limits<double>::infinity();
            break;
        }
        if (!frame.empty()) {
            Emit(frame);
            ++framesSent_;
        }
        nextFrameS_ += frameIntervalS_;
    }
    while (mode_ == Mode::Listing && nowS >= nextListingS_) {
        ListingLine(nowS);
        nextListingS_ += kListingIntervalS;
    }
}

double SimulatedInstrument::NextDueS() const {
    switch (mode_) {
        case Mode::Loading: return loadDeadlineS_;
        case Mode::Collecting: return nextFrameS_;
        case Mode::Listing: return nextListingS_;
        default: return std::numeric_limits<double>::infinity();
    }
}

std::string SimulatedInstrument::TakeOutput() {
    std::string out;
    out.swap(out_);
    return out;
}

void SimulatedInstrument::StartCollecting(double nowS) {
    const RiverScenario scenario = ScenarioForRecords(scenario_, records_);
    auto transect = std::make_unique<LiveTransect>(scenario, records_, behaviour_.faults, behaviour_.maxProfiles);
    if (!transect->Problem().empty()) {
        AnswerError(transect->Problem());
        return;
    }
    transect_ = std::move(transect);
    frameIntervalS_ = behaviour_.frameIntervalS > 0.0 ? behaviour_.frameIntervalS : scenario.crossing.intervalS;
    nextFrameS_ = nowS + frameIntervalS_;
    framesSent_ = 0;
    mode_ = Mode::Collecting;
    line_.clear();
    // No prompt: from here on the line carries frames.
    Emit("\r\nStarting data collection\r\nOK\r\n");
}

void SimulatedInstrument::EndCollection() {
    if (mode_ != Mode::Collecting) return;
    mode_ = Mode::Prompt;
    nextFrameS_ = std::numeric_limits<double>::infinity();
    if (onEnd_ && transect_) onEnd_(transect_->Scenario(), transect_->Truth());
}

void SimulatedInstrument::StartListing(int kind, double nowS) {
    mode_ = Mode::Listing;
    listingKind_ = kind;
    Emit("\r\n");
    nextListingS_ = nowS;
    Advance(nowS);
}

void SimulatedInstrument::ListingLine(double nowS) {
    char text[96];
    if (listingKind_ == 1) {
        std::snprintf(text, sizeof text, "Temp %.2f C  Pressure 0.000 dbar  Battery 12.0 V\r\n",
                      scenario_.instrument.temperatureC);
        Emit(text);
    } else if (listingKind_ == 2) {
        Emit("Heading 90.0  Pitch 0.0  Roll 0.0\r\n");
    } else {
        const GeoPoint here{scenario_.latitudeDeg, scenario_.longitudeDeg};
        const CivilTime t = ClockAt(nowS);
        Emit(GgaSentence(t, here) + "\r\n" + RmcSentence(t, here, 0.0, 0.0) + "\r\n");
    }
}

CivilTime SimulatedInstrument::ClockAt(double nowS) const {
    return AddSeconds(scenario_.crossing.start, static_cast<int64_t>(std::floor(nowS + clockOffsetS_)));
}

}  // namespace rm::sim
