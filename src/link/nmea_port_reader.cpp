#include "link/nmea_port_reader.h"

#include <cstdio>
#include <vector>

#include "link/logged_reads.h"

namespace rm {

namespace {

constexpr const char* kGpsProgressText = "Waiting for GPS data";
constexpr const char* kEchoProgressText = "Waiting for Echo Sounder data";

// Appends `count` bytes to the file at `path`, creating it when missing. Opened and closed per
// call so that everything written is on disk even if the program ends abruptly.
bool AppendToFile(const std::string& path, const uint8_t* bytes, size_t count) {
    std::FILE* file = std::fopen(path.c_str(), "ab");
    if (file == nullptr) return false;
    bool ok = std::fwrite(bytes, 1, count, file) == count;
    ok = (std::fclose(file) == 0) && ok;
    return ok;
}

// Empties the stream, drains the port, then polls until `done` holds or `limitMs` has passed
// since the start (the drain included). Progress steps every 200 ms when a prompt is given.
template <class Done>
int ListenUntil(NmeaPortReader& reader, SerialPort* port, uint32_t limitMs, UserPrompt* progress, const char* what,
                int& bytesRead, Done done) {
    bytesRead = 0;
    if (port == nullptr || !port->IsOpen()) return 0;
    const int total = static_cast<int>(limitMs / kNmeaProgressStepMs);
    const uint32_t start = port->TickMs();
    reader.Stream().Reset();
    if (progress) progress->Progress(0, total, what);
    DrainReceive(*port, kNmeaDrainLimitMs, nullptr);  // a line that never goes quiet is no error here

    int shown = 0;
    int result = 0;
    for (;;) {
        int got = reader.Poll(port);
        bytesRead += got;
        if (done()) {
            result = 1;
            break;
        }
        uint32_t elapsed = TicksSince(start, port->TickMs());
        if (elapsed >= limitMs) break;
        int step = static_cast<int>(elapsed / kNmeaProgressStepMs);
        if (progress && step != shown) {
            shown = step;
            progress->Progress(step, total, what);
        }
        if (got == 0) port->SleepMs(kNmeaWaitSleepMs);
    }
    if (progress) progress->Progress(total, total, what);
    return result;
}

}  // namespace

std::string DeclinationValueText(double degrees) {
    char text[64];
    std::snprintf(text, sizeof text, "Current value is %.2f degrees", degrees);
    return text;
}

std::string RawCopyPath(const std::string& dataFilePath, const std::string& extension) {
    std::string stem = dataFilePath.size() >= 4 ? dataFilePath.substr(0, dataFilePath.size() - 4) : dataFilePath;
    return stem + extension;
}

NmeaPortReader::NmeaPortReader(std::string talkerPrefix, std::string rawExtension)
    : rawExtension_(std::move(rawExtension)), stream_(std::move(talkerPrefix)) {}

void NmeaPortReader::SetRecordingDataFile(const std::string& dataFilePath) {
    rawCopyPath_ = dataFilePath.empty() ? std::string() : RawCopyPath(dataFilePath, rawExtension_);
    rawCopyFailed_ = false;
}

int NmeaPortReader::Poll(SerialPort* port) {
    if (port == nullptr || !port->IsOpen()) return 0;
    if (buffer_.empty()) buffer_.resize(kNmeaReadBufferSize);  // once per reader
    int got = port->ReadBuffer(buffer_.data(), kNmeaReadBufferSize);
    if (got <= 0) return 0;
    stream_.Feed(buffer_.data(), static_cast<size_t>(got));
    if (!rawCopyPath_.empty() && !AppendToFile(rawCopyPath_, buffer_.data(), static_cast<size_t>(got))) {
        rawCopyFailed_ = true;
    }
    return got;
}

NmeaPortReader MakeGpsPortReader() { return NmeaPortReader(kGpsTalkerPrefix, kRawGpsExtension); }

NmeaPortReader MakeEchoPortReader(const EchoSounderSettings& settings) {
    return NmeaPortReader(EchoStreamPrefix(settings), kRawEchoExtension);
}

int PollGpsPort(NmeaPortReader& gps, SerialPort* port) { return gps.Poll(port); }

int PollEchoPort(NmeaPortReader& echo, SerialPort* port) { return echo.Poll(port); }

int WaitForFix(NmeaPortReader& gps, SerialPort* port, uint32_t limitMs, UserPrompt* progress, int& bytesRead,
               GpsFix* fix) {
    GpsFix found;
    int result = ListenUntil(gps, port, limitMs, progress, kGpsProgressText, bytesRead,
                             [&] { return TakeNewestFix(gps.Sentences(), found) == 1; });
    if (result == 1 && fix != nullptr) *fix = found;
    return result;
}

int WaitForDepth(NmeaPortReader& echo, SerialPort* port, uint32_t limitMs, UserPrompt* progress, int& bytesRead) {
    return ListenUntil(echo, port, limitMs, progress, kEchoProgressText, bytesRead,
                       [&] { return HasDecodableDepth(echo.Sentences()); });
}

int ReadDeclination(NmeaPortReader& gps, SerialPort* port, uint32_t limitMs, double& degrees) {
    int bytesRead = 0;
    double found = 0.0;
    int result = ListenUntil(gps, port, limitMs, nullptr, kGpsProgressText, bytesRead,
                             [&] { return DeclinationFromSentences(gps.Sentences(), found) == 1; });
    if (result == 1) degrees = found;
    return result;
}

}  // namespace rm
