#include "link/internal_gps.h"

#include "link/wake_up.h"

namespace rm {

namespace {

void Show(DisplayWindow* window, const std::string& text) {
    if (window == nullptr) return;
    for (char c : text) window->Append(c);
}

// Shows the step's title, runs it, and ends its line with the outcome.
template <class Step>
int RunStep(DisplayWindow* window, const char* title, Step step) {
    Show(window, title);
    int result = step();
    Show(window, std::string(result == 1 ? kStepSuccess : kStepFailed) + "\r\n");
    return result;
}

}  // namespace

const char* InternalGpsStateText(bool receiverPresent, bool enabled) {
    if (!receiverPresent) return kInternalGpsNotPresentText;
    return enabled ? kInternalGpsEnabledText : kInternalGpsDisabledText;
}

int SetInternalGps(PromptDialogue& dialogue, bool on, DisplayWindow* window, RawLog* raw) {
    if (RunStep(window, kEnableInternalGpsTitle, [&] {
            return dialogue.SendCommandWaitOk(on ? "GPS yes" : "GPS no", kInternalGpsCommandLimitMs, raw);
        }) != 1) {
        return 0;
    }
    return RunStep(window, kSaveSetupTitle,
                   [&] { return dialogue.SendCommandWaitOk("SaveSetup", kInternalGpsCommandLimitMs, raw); });
}

int ShowInternalGpsOutput(PromptDialogue& dialogue, DisplayWindow* window, RawLog* raw) {
    return RunStep(window, kDisplayGpsOutputTitle,
                   [&] { return dialogue.SendCommand("echo 1", kInstrumentPrompt, true, raw); });
}

int ReadInternalDeclination(PromptDialogue& dialogue, uint32_t limitMs, double& degrees, RawLog* raw) {
    if (!WakeResultIsKvr(WakeInstrument(dialogue, 0, nullptr, raw))) return 0;
    if (ShowInternalGpsOutput(dialogue, nullptr, raw) != 1) return 0;
    NmeaPortReader reader = MakeGpsPortReader();
    return ReadDeclination(reader, &dialogue.Port(), limitMs, degrees);
}

}  // namespace rm
