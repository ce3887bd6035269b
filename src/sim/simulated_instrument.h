#pragma once
// A KVR instrument at the other end of a serial line, as bytes in and bytes out, with no I/O of
// its own: the caller hands it what arrived with the time, asks it to advance its clock, and
// sends what it produced. At its prompt it echoes every byte and runs a command at each
// carriage return; a 0x00 byte (what a break reads as on a line without break signalling) ends
// any collection or listing and brings the banner and a fresh prompt. "Start" makes it send one
// profile frame per interval from the virtual river until a break or "Stop".
//
// Answers begin after the echoed carriage return with "\r\n", end every line with "\r\n" and
// close with the prompt ">". The answer to "Ver" and the frame of "Get <record>" come behind
// the reply marker 0xE8, as the line gives it. Records travel in the length/payload/checksum
// frame of the link.

#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <string>

#include "sim/instrument_identity.h"
#include "sim/live_transect.h"
#include "sim/river_scenario.h"
#include "sim/sim_clock.h"

namespace rm::sim {

struct InstrumentBehaviour {
    InstrumentFamily family = InstrumentFamily::Kvr;
    int orientation = 0;         // Sensor Orientation of the configuration: 0 down, 1 up, 2 side
    bool silent = false;         // takes everything, answers nothing
    bool echo = true;            // echoes what it receives at its prompt
    bool replyMarker = true;     // 0xE8 before the "Ver" answer and before record frames
    bool startAsleep = false;    // only a break wakes it
    bool refuseBinary = false;   // answers "OF Binary" with an error
    double frameIntervalS = 0.0; // seconds between frames on the line; 0: the setup's profile interval
    int maxProfiles = 0;         // frames per collection at most; 0: the whole crossing
    FrameFaults faults;
};

// The instrument's limits, told in its error lines.
constexpr double kMinCellSizeCm = 5.0;
constexpr double kMaxCellSizeCm = 400.0;
constexpr int kMaxCells = 100;
// Seconds a record load may take before the instrument gives up waiting for its bytes.
constexpr double kLoadTimeoutS = 3.0;
// Seconds between the lines of a sensor listing or of the repeated GPS sentences.
constexpr double kListingIntervalS = 0.5;

class SimulatedInstrument {
public:
    enum class Mode { Asleep, Prompt, Loading, Collecting, Listing };

    SimulatedInstrument(const RiverScenario& scenario, const InstrumentBehaviour& behaviour);

    // Bytes from the other side, received at `nowS` (seconds on the caller's clock).
    void Receive(const uint8_t* data, size_t size, double nowS);
    // Produces whatever is due by `nowS`: frames, listing lines, a load that timed out.
    void Advance(double nowS);
    // When Advance has something to do next; infinity when nothing is planned.
    double NextDueS() const;
    // The bytes produced since the last call.
    std::string TakeOutput();

    Mode CurrentMode() const { return mode_; }
    const InstrumentRecords& Records() const { return records_; }
    // Frames sent in the present or last collection (a lost frame is not sent).
    int FramesSent() const { return framesSent_; }
    // Ends a collection that is running, as a break would, without printing anything.
    void EndCollection();
    // Called with the scenario and the truth of a collection when it ends.
    using CollectionEndHandler = std::function<void(const RiverScenario&, const RecordingResult&)>;
    void OnCollectionEnd(CollectionEndHandler handler) { onEnd_ = std::move(handler); }

private:
    // Byte handling by mode.
    void OnPromptByte(uint8_t byte, double nowS);
    void OnLoadByte(uint8_t byte);
    void OnCollectingByte(uint8_t byte);
    void Break();
    void Emit(const std::string& bytes) { out_ += bytes; }
    // "\r\n", each line with "\r\n", then the prompt.
    void Answer(std::initializer_list<std::string> lines);
    void AnswerOk(const std::string& line = {});
    void AnswerError(const std::string& why);

    // Commands (instrument_commands.cpp).
    void Execute(const std::string& line, double nowS);
    void GetRecord(const std::string& name);
    void BeginLoad(const std::string& name, double nowS);
    void FinishLoad();
    void CellSize(const std::string& argument);
    void NumberOfCells(const std::string& argument);
    void PulseCoherent(const std::string& argument);
    void InternalGps(const std::string& argument);
    void ShowDate(double nowS);
    void ShowTime(double nowS);
    // "Date Y/M/D" (`date`) or "Time h:m:s".
    void SetClock(const std::string& argument, bool date, double nowS);
    bool AcceptSetup(const InstrumentRecords& records, std::string& problem);
    void StartCollecting(double nowS);
    void StartListing(int kind, double nowS);
    void ListingLine(double nowS);
    CivilTime ClockAt(double nowS) const;

    RiverScenario scenario_;
    InstrumentBehaviour behaviour_;
    InstrumentRecords defaults_;
    InstrumentRecords records_;
    Mode mode_ = Mode::Prompt;
    std::string line_;
    std::string out_;
    std::map<std::string, std::string> settings_;  // ping settings and output format, as told

    // Clock: the scenario's start at the simulator's time 0, moved by Date and Time.
    double clockOffsetS_ = 0.0;

    // Record load.
    std::string loadName_;
    std::string loadBytes_;
    double loadDeadlineS_ = 0.0;

    // Collection.
    std::unique_ptr<LiveTransect> transect_;
    double nextFrameS_ = std::numeric_limits<double>::infinity();
    double frameIntervalS_ = 1.0;
    int framesSent_ = 0;
    CollectionEndHandler onEnd_;

    // Listing: 1 sensors, 2 compass, 3 GPS sentences.
    int listingKind_ = 0;
    double nextListingS_ = std::numeric_limits<double>::infinity();
};

}  // namespace rm::sim
