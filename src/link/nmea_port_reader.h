#pragma once
// Reading a GPS receiver or an echo sounder on a serial port: polling what has arrived into the
// tree of newest sentences, copying the raw bytes beside the data file while recording, and the
// timed waits for a first fix, a first depth or the magnetic declination.

#include <cstdint>
#include <string>
#include <vector>

#include "data/nmea_echo_depth.h"
#include "data/nmea_gps_fix.h"
#include "data/nmea_sentences.h"
#include "data/user_prompt.h"
#include "link/serial_port.h"

namespace rm {

// Bytes taken from the port by one poll at most.
constexpr int kNmeaReadBufferSize = 10023;
// Time given to empty the port before a wait, and the step of a wait's progress bar.
constexpr uint32_t kNmeaDrainLimitMs = 200;
constexpr uint32_t kNmeaProgressStepMs = 200;
// Sleep between two polls of a wait that found nothing new.
constexpr uint32_t kNmeaWaitSleepMs = 5;
// How long the declination dialog listens for an RMC.
constexpr uint32_t kDeclinationLimitMs = 5000;

constexpr const char* kRawGpsExtension = ".raw_gps";
constexpr const char* kRawEchoExtension = ".raw_echo";

// Texts of the declination dialog.
constexpr const char* kDeclinationErrorTitle = "Error reading Magnetic Declination";
constexpr const char* kDeclinationErrorText = "Unable to locate RMC NMEA string.";
// "Current value is %.2f degrees" with the declination.
std::string DeclinationValueText(double degrees);

// The raw copy's path: the data file's path less its last four characters (".kvr"), plus
// `extension`.
std::string RawCopyPath(const std::string& dataFilePath, const std::string& extension);

// One NMEA stream on a port: its reader state and where its raw copy goes while recording.
class NmeaPortReader {
public:
    NmeaPortReader(std::string talkerPrefix, std::string rawExtension);

    NmeaStreamReader& Stream() { return stream_; }
    const NmeaStreamReader& Stream() const { return stream_; }
    // The newest sentences since the last reset or take (see NmeaStreamReader).
    const NodeRef& Sentences() const { return stream_.Sentences(); }
    NodeRef TakeSentences() { return stream_.TakeSentences(); }

    // While a data file is set, every poll appends the bytes it read to the raw copy beside it;
    // an empty path stops the copying.
    void SetRecordingDataFile(const std::string& dataFilePath);
    const std::string& RawCopyFile() const { return rawCopyPath_; }
    // True once an append to the raw copy has failed; cleared by SetRecordingDataFile.
    bool RawCopyFailed() const { return rawCopyFailed_; }

    // Reads up to one buffer of waiting bytes from `port` (none when it is null or closed),
    // feeds them to the stream and appends them to the raw copy. Returns the bytes read.
    int Poll(SerialPort* port);

private:
    std::string rawExtension_;
    std::string rawCopyPath_;
    bool rawCopyFailed_ = false;
    NmeaStreamReader stream_;
    std::vector<uint8_t> buffer_;
};

// The two streams of a document: GPS with the talkers of kGpsTalkerPrefix ("GP", "GN", ...) and the
// ".raw_gps" copy; echo sounder with the talker of its settings and the ".raw_echo" copy.
NmeaPortReader MakeGpsPortReader();
NmeaPortReader MakeEchoPortReader(const EchoSounderSettings& settings);

// One poll of each stream, as the acquisition tick runs them.
int PollGpsPort(NmeaPortReader& gps, SerialPort* port);
int PollEchoPort(NmeaPortReader& echo, SerialPort* port);

// Listens to a GPS port for up to `limitMs`: the stream is emptied, the port drained (200 ms),
// then polled until a GGA (or, without GGA, a GXP) decodes. Progress, when `progress` is given,
// runs from 0 to limitMs / 200. Returns 1 with `fix` filled, else 0; `bytesRead` gets the bytes
// read after the drain. The sentences heard stay in the reader for the connection check.
int WaitForFix(NmeaPortReader& gps, SerialPort* port, uint32_t limitMs, UserPrompt* progress, int& bytesRead,
               GpsFix* fix = nullptr);

// As WaitForFix, until a DPT or DBT decodes.
int WaitForDepth(NmeaPortReader& echo, SerialPort* port, uint32_t limitMs, UserPrompt* progress, int& bytesRead);

// As WaitForFix without progress, until an RMC gives the magnetic declination (see
// DeclinationFromSentences). Returns 1 with `degrees`, else 0.
int ReadDeclination(NmeaPortReader& gps, SerialPort* port, uint32_t limitMs, double& degrees);

}  // namespace rm
