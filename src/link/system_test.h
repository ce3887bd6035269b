#pragma once
// The instrument's full system test: its self test, the five "show" listings and a look at
// its sensors (and compass), each step's title in the test window and everything the
// instrument sent in a log file beside the recordings. Also the set-up sequence that switches
// the internal GPS receiver on, in the same style.

#include "link/logged_reads.h"
#include "link/prompt_dialogue.h"
#include "link/raw_log.h"

#include <cstdint>
#include <string>
#include <vector>

namespace rm {

constexpr const char* kTestLogExtension = ".TestLog";
constexpr const char* kDefaultRecordedFileDirectory = "C:\\QorData\\";
constexpr const char* kTestLogErrorTitle = "Error";
constexpr const char* kTestLogErrorText = "Unable to create log file.";
constexpr const char* kCheckingSensorsTitle = "Checking Sensors............... ";
constexpr const char* kWakingUpSystemTitle = "Waking up System............... ";
constexpr const char* kSystemTestFailed = "Failed";
constexpr const char* kSystemTestSuccess = "Success";

// The test log of a deployment: "<directory>/<deploymentName>.TestLog". A directory ending in
// a path separator ('/' or '\') is used as it is.
std::string TestLogPath(const std::string& directory, const std::string& deploymentName);

// A step that ends at the instrument's prompt.
struct PromptStep {
    const char* title;
    const char* command;
};
// "test" and the five "show" commands, in their order.
const std::vector<PromptStep>& SystemTestPromptSteps();

struct SystemTestTiming {
    int promptRounds = 30000;         // rounds (at least 1 ms each) a step may take to its prompt
    uint32_t sensorReadMs = 3000;      // how long "sensor cont" is listened to
    uint32_t compassReadMs = 2500;     // how long "compass cont" is listened to
};

constexpr int kSystemTestPassed = 1;
constexpr int kSystemTestStepFailed = 0;
constexpr int kSystemTestNoLog = -1;  // after "Unable to create log file."

// Runs the test on an instrument at its prompt. Each prompt step shows its title, sends its
// command and waits for the prompt; without it the step adds "Failed" and the test ends. The
// sensor check sends "sensor cont" (and "compass cont" when a compass is installed), listens
// for a while and ends each with a wake-up; "Success" follows when the last wake-up brings a
// KVR back. The window shows the titles, the listings and the outcome; the log, appended to,
// gets all of that and the sensor output as well.
int RunSystemTest(PromptDialogue& dialogue, const std::string& logPath, bool compassInstalled,
                  DisplayWindow* window, RawLog* raw = nullptr, const SystemTestTiming& timing = {});

// Wakes the instrument ("Waking up System"), switches the internal GPS on and saves the setup,
// then makes the instrument repeat the receiver's sentences; every step's line ends in
// "Success" or "Failed", and the first failure ends the sequence. 1 when all steps succeeded.
int RunInternalGpsSetup(PromptDialogue& dialogue, DisplayWindow* window, RawLog* raw = nullptr);

}  // namespace rm
