#include "link/calibration_log.h"

#include <cstdio>

namespace rm {

std::string CalibrationLogHead(const std::string& title, std::time_t now) {
    std::tm local{};
    localtime_r(&now, &local);
    char when[64];
    std::snprintf(when, sizeof when, "%04d/%02d/%02d %02d:%02d:%02d", local.tm_year + 1900, local.tm_mon + 1,
                  local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec);
    return title + "\r\nQuorle Ripplemark v4.50\r\nCreated " + when + "\r\n\r\n";
}

int OpenCalibrationLog(UserPrompt& prompt, const std::string& extension, const std::string& title,
                       std::unique_ptr<RawLog>& log) {
    log.reset();
    const std::string filter = title + " (*." + extension + ")|*." + extension + "||";
    const std::string path = prompt.AskSavePath(filter, extension, "");
    if (path.empty()) return 0;
    // The log is made anew: an earlier calibration under the same name is replaced, not added to.
    std::FILE* fresh = std::fopen(path.c_str(), "wb");
    if (fresh != nullptr) std::fclose(fresh);
    if (fresh != nullptr) log = std::make_unique<RawLog>(path);
    if (!log || !log->IsOpen()) {
        log.reset();
        prompt.TitledMessage(kCalibrationLogErrorTitle, kCalibrationLogErrorText + path);
        return -1;
    }
    log->Write(CalibrationLogHead(title, std::time(nullptr)));
    log->Flush();
    return 1;
}

}  // namespace rm
