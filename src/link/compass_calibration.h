#pragma once
// Calibration of the instrument's compass: the person turns the instrument through two full
// turns while the instrument calibrates; the program starts and stops this, copies the whole
// dialogue to a ".compass" log and scores the result the instrument reports as
// H<digit>V<digit>M<number> (horizontal and vertical scores 0-9, ambient field 0-100).

#include "link/logged_reads.h"
#include "link/prompt_dialogue.h"
#include "link/raw_log.h"

#include <cstdint>
#include <memory>
#include <string>

namespace rm {

constexpr const char* kCompassLogExtension = "compass";
constexpr const char* kCompassLogTitle = "Compass Calibration File";
constexpr const char* kCompassReadyText = "Press the Start button to begin compass calibration.";
constexpr const char* kCompassTurnText =
    "Begin slowly rotating the compass two full turns, varing the pitch and roll as much as possible.\nAllow at "
    "least a minute for each turn.\n\nWhen finished, press Stop button.\n";
constexpr const char* kCompassErrorTitle = "Communication Error";
constexpr const char* kCompassWakeErrorText = "Unable to wake up system";
constexpr const char* kCompassUnreadableText =
    "The compass results are unreadable.\nPlease repeat the calibration procedure.";
constexpr const char* kCompassCommandErrorText = "Unable to start compass calibration";
constexpr uint32_t kCompassTimerId = 1109;
constexpr uint32_t kCompassTimerPeriodMs = 500;
// The character that ends the instrument's calibration.
constexpr char kCompassStopKey = '\r';

struct CompassScore {
    int horizontal = 0;
    int vertical = 0;
    double ambient = 0.0;
};

// Reads a score text that starts at its "H": "H" at 0, "V" at 2, "M" at 4; a non-digit score
// counts 0; the field runs from 5 to the ";" or the end and becomes 100 outside 0 to 100. False
// when the pattern is not there or the field holds no number.
bool ParseCompassScore(const std::string& text, CompassScore& score);

// "VERY POOR" (0-2), "POOR" (3-5), "FAIR" (6-7), "GOOD" (8), "EXCELLENT" (9).
const char* CompassScoreWord(int score);
// The score of the ambient field: the truncation of 10 - M / 10, at most 9.
int AmbientFieldIndex(double ambient);

// The report shown to the person: the three scores with their words, the verdict on the scores,
// the sentence on the magnetic field and the result line.
std::string CompassScoreReport(const CompassScore& score);

// Finds the first "H" of the instrument's reply and reports its score. False when unreadable.
bool ScoreCompassReply(const std::string& reply, std::string& report);

class CompassCalibration {
public:
    // `window` (may be null) is the dialog's text: it gets the instruction, the instrument's
    // output while the person turns the compass, and the report.
    CompassCalibration(PromptDialogue& dialogue, DisplayWindow* window);

    // Asks for the log file, wakes the instrument and sends "compass cal". 1 running; 0 the
    // person cancelled; -1 the log could not be made; -2 no instrument woke; -3 the command
    // was not taken. Every failure but the cancel has shown its box.
    int Start();
    // One timer tick: copies what the line sent to the window and the log.
    void Tick();
    // Ends the calibration and scores it. 1 with the report; 0 unreadable (after its box);
    // -1 when not running.
    int Stop();

    bool Running() const { return running_; }
    const std::string& Report() const { return report_; }

private:
    void Show(const std::string& text);

    PromptDialogue& dialogue_;
    DisplayWindow* window_;
    std::unique_ptr<RawLog> log_;
    bool running_ = false;
    std::string report_;
};

}  // namespace rm
