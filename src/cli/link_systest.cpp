#include "cli/link_commands.h"

#include "cli/command.h"
#include "cli/recording_folder.h"
#include "data/kvr_data.h"
#include "link/record_transfer.h"
#include "link/system_test.h"
#include "link/wake_up.h"

namespace rm::cli {

int RunSystemTestCommand(SerialPortFactory& factory, const SystemTestChoices& choices, UserPrompt& prompt,
                         std::ostream& out) {
    std::unique_ptr<SerialPort> port = OpenChosenPort(factory, choices.instrument, prompt);
    if (!port) return kExitFailure;
    PromptDialogue dialogue(*port, prompt, "");
    if (!WakeResultIsKvr(WakeAndReport(dialogue, nullptr))) {
        prompt.Message(kWakeupErrorText);
        return kExitFailure;
    }
    // The configuration tells whether a compass is to be looked at; the user setup names the log.
    CKvrData kvr;
    InstrumentLinkState state;
    if (!GetConfRecord(dialogue, kvr, state) || !GetUserRecord(dialogue, kvr, state)) return kExitFailure;
    const std::string name = choices.deploymentName.empty() ? kvr.user.DeploymentName : choices.deploymentName;
    const std::string folder = choices.logFolder.empty() ? RecordingFolderFromSettings(prompt) : choices.logFolder;
    if (folder.empty()) return kExitFailure;
    const std::string logPath = TestLogPath(folder, name.empty() ? std::string("SystemTest") : name);

    StreamWindow window(out);
    const int result = RunSystemTest(dialogue, logPath, kvr.conf.CompassInstalled != 0, &window);
    out << '\n' << "Log: " << logPath << '\n';
    return result == kSystemTestPassed ? kExitOk : kExitFailure;
}

}  // namespace rm::cli
