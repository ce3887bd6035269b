#include "link/ping_settings.h"

#include "link/record_transfer.h"
#include "link/wake_up.h"

#include <cstdio>

namespace rm {

namespace {

constexpr uint32_t kPingCommandLimitMs = 3000;

std::string Format(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

}  // namespace

std::vector<std::string> PingSettingCommands(const PingSettings& settings) {
    return {Format("cbd set %.2f", settings.blankingDistance), Format("ccs set %.2f", settings.cellSize),
            Format("cpg set %.2f", settings.lag), Format("cpl set %.2f", settings.pulseLength),
            "nbp " + std::to_string(settings.bottomPings)};
}

int TransmitPingSettings(PromptDialogue& dialogue, const PingSettings& settings, CKvrData& kvr, RawLog* raw) {
    if (!WakeResultIsKvr(WakeAndReport(dialogue, raw))) return 0;
    static const char* const kFailures[] = {kSetCbdFailureText, kSetCcsFailureText, kSetCpgFailureText,
                                            kSetCplFailureText, kSetNbpFailureText};
    const std::vector<std::string> commands = PingSettingCommands(settings);
    bool all = true;
    for (size_t i = 0; i < commands.size(); ++i) {
        if (!dialogue.SendCommandWaitOk(commands[i], kPingCommandLimitMs, raw)) {
            dialogue.Prompt().Message(kFailures[i]);
            all = false;
        }
    }
    if (!GetOperRecord(dialogue, kvr, raw)) all = false;
    return all ? 1 : 0;
}

}  // namespace rm
