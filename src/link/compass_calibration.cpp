#include "link/compass_calibration.h"

#include "link/calibration_log.h"
#include "link/wake_up.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace rm {

namespace {

constexpr size_t kStopReplyBufferSize = 4096;
constexpr int kStopReplyRounds = 4000;
constexpr uint32_t kAfterCommandSleepMs = 1500;

int ScoreDigit(char c) { return (c >= '0' && c <= '9') ? c - '0' : 0; }

std::string Format(const char* format, int value, const char* word) {
    char line[160];
    std::snprintf(line, sizeof line, format, value, word);
    return line;
}

// The sentence on the ambient field, without its opening words.
std::string FieldSentence(double ambient) {
    if (ambient > 30.0) {
        return "ambient magnetic field strength is very high."
               "\nAn alternate mounting location for the compass is highly recommended."
               "\nRemoving any magnetic material from the vicinity of the compass may help as well.";
    }
    if (ambient > 20.0) {
        return "ambient magnetic field strength is fairly high."
               "\nConsider alternate mounting locations for the compass or"
               "\nRemoving any magnetic material from the vicinity of the compass may help as well.";
    }
    if (ambient > 10.0) return "ambient magnetic field strength is fairly low.";
    return "ambient magnetic field strength is very low."
           "\nThere was very little magnetic distortion measured.";
}

}  // namespace

bool ParseCompassScore(const std::string& text, CompassScore& score) {
    if (text.size() < 5 || text[0] != 'H' || text[2] != 'V' || text[4] != 'M') return false;
    const size_t end = text.find(';', 5);
    const std::string field = text.substr(5, end == std::string::npos ? std::string::npos : end - 5);
    char* stop = nullptr;
    const double ambient = std::strtod(field.c_str(), &stop);
    // A field without any number is not a score of 0: the reply is unreadable.
    if (stop == field.c_str()) return false;
    score.horizontal = ScoreDigit(text[1]);
    score.vertical = ScoreDigit(text[3]);
    score.ambient = (ambient >= 0.0 && ambient <= 100.0) ? ambient : 100.0;
    return true;
}

const char* CompassScoreWord(int score) {
    if (score <= 2) return "VERY POOR";
    if (score <= 5) return "POOR";
    if (score <= 7) return "FAIR";
    if (score == 8) return "GOOD";
    return "EXCELLENT";
}

int AmbientFieldIndex(double ambient) {
    const int index = static_cast<int>(10.0 - ambient * 0.1);
    return index > 9 ? 9 : index;
}

std::string CompassScoreReport(const CompassScore& score) {
    const int h = score.horizontal;
    const int v = score.vertical;
    const double m = score.ambient;
    std::string report = "Calibration score results:\n--------------------------";
    report += Format("\nHorizontal calibration score (0-9):         %d (%s)", h, CompassScoreWord(h));
    report += Format("\nVertical calibration score (0-9):           %d (%s)", v, CompassScoreWord(v));
    char ambientLine[160];
    std::snprintf(ambientLine, sizeof ambientLine, "\nAmbient magnetic field strength (0-100): %.2f (%s)\n", m,
                  CompassScoreWord(AmbientFieldIndex(m)));
    report += ambientLine;

    bool good = false;
    if (h == 9 && v == 9) {
        report += "\nThe horizontal and vertical scores are excellent.";
        good = true;
    } else if (h >= 8 && v >= 8) {
        report += "\nThe horizontal and vertical scores are sufficient for good compass accuracy.";
        good = true;
    } else if (h < 6 || v < 6) {
        // Scores this low end the report: there is no verdict to give.
        report += "\nThe horizontal and vertical scores are not sufficient for good compass accuracy.";
        report += "\nPlease repeat the calibration.";
        return report;
    } else {
        report += "\nThe horizontal and vertical scores are fair, but could probably be better for good compass "
                  "accuracy.";
        report += "\nConsider repeating the calibration.";
    }
    report += (good && m < 20.0) ? "\nThe " : "\nHowever, the ";
    report += FieldSentence(m);
    if (good && m < 20.0) {
        report += "\n\nResults: PASS\n";
    } else if (v >= 6 && m < 30.0) {
        report += "\n\nResults: PASS (consider repeating calibration)\n";
    } else {
        report += "\n\nResults: FAIL\n";
    }
    return report;
}

bool ScoreCompassReply(const std::string& reply, std::string& report) {
    const size_t at = reply.find('H');
    CompassScore score;
    if (at == std::string::npos || !ParseCompassScore(reply.substr(at), score)) return false;
    report = CompassScoreReport(score);
    return true;
}

CompassCalibration::CompassCalibration(PromptDialogue& dialogue, DisplayWindow* window)
    : dialogue_(dialogue), window_(window) {}

void CompassCalibration::Show(const std::string& text) {
    if (window_ == nullptr) return;
    for (char c : text) window_->Append(c);
}

int CompassCalibration::Start() {
    if (running_) return 1;
    UserPrompt& prompt = dialogue_.Prompt();
    report_.clear();
    std::unique_ptr<RawLog> log;
    const int opened = OpenCalibrationLog(prompt, kCompassLogExtension, kCompassLogTitle, log);
    if (opened != 1) return opened;
    if (!WakeResultIsKvr(WakeInstrument(dialogue_, 0, nullptr, log.get()))) {
        prompt.TitledMessage(kCompassErrorTitle, kCompassWakeErrorText);
        return -2;
    }
    if (dialogue_.SendCommandNoWait("compass cal", log.get()) != 1) {
        prompt.TitledMessage(kCompassErrorTitle, kCompassCommandErrorText);
        return -3;
    }
    dialogue_.Port().SleepMs(kAfterCommandSleepMs);
    log_ = std::move(log);
    running_ = true;
    Show(kCompassTurnText);
    return 1;
}

void CompassCalibration::Tick() {
    if (!running_) return;
    SerialPort& port = dialogue_.Port();
    const int waiting = port.RxCount();
    if (waiting <= 0) return;
    std::string bytes(static_cast<size_t>(waiting), '\0');
    const int got = port.ReadBuffer(reinterpret_cast<uint8_t*>(&bytes[0]), waiting);
    if (got <= 0) return;
    bytes.resize(static_cast<size_t>(got));
    Show(bytes);
    log_->Write(bytes);
    log_->Flush();
}

int CompassCalibration::Stop() {
    if (!running_) return -1;
    running_ = false;
    SerialPort& port = dialogue_.Port();
    port.WriteString(std::string(1, kCompassStopKey), kLineEnd);
    std::string reply;
    ReadUntilPattern(port, reply, kStopReplyBufferSize, ">", kStopReplyRounds, nullptr, log_.get());
    log_.reset();
    if (!ScoreCompassReply(reply, report_)) {
        dialogue_.Prompt().TitledMessage(kCompassErrorTitle, kCompassUnreadableText);
        return 0;
    }
    Show(report_);
    return 1;
}

}  // namespace rm
