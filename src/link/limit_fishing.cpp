#include "link/limit_fishing.h"

#include "link/logged_reads.h"

#include <cerrno>
#include <cstdlib>

namespace rm {

namespace {

constexpr int kAnswerLength = 1023;
constexpr uint32_t kAnswerLimitMs = 2000;
constexpr size_t kAnswerWords = 9;

// A whole word read as a number; false when anything but the number stands in it.
bool WordToDouble(const std::string& word, double& value) {
    if (word.empty()) return false;
    char* end = nullptr;
    errno = 0;
    const double v = std::strtod(word.c_str(), &end);
    if (errno != 0 || end != word.c_str() + word.size()) return false;
    value = v;
    return true;
}

bool WordToInt(const std::string& word, int& value) {
    if (word.empty()) return false;
    char* end = nullptr;
    errno = 0;
    const long v = std::strtol(word.c_str(), &end, 10);
    if (errno != 0 || end != word.c_str() + word.size() || v < 0 || v > 0x7FFFFFFFL) return false;
    value = static_cast<int>(v);
    return true;
}

bool HasForm(const std::vector<std::string>& words, const char* first, const char* second) {
    return words.size() == kAnswerWords && words[0] == first && words[1] == second;
}

// Sends the command and reads two lines into the same buffer: the first takes the end of the
// echoed command line, the second is the answer.
std::string AskLimit(PromptDialogue& dialogue, const std::string& command, RawLog* raw) {
    dialogue.SendCommandNoWait(command, raw);
    std::string line;
    for (int i = 0; i < 2; ++i) ReadStringLogged(dialogue.Port(), line, kAnswerLength, '\n', kAnswerLimitMs, raw);
    return line;
}

}  // namespace

std::vector<std::string> SplitAnswerWords(const std::string& line) {
    std::string text = line;
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
    std::vector<std::string> words;
    size_t at = 0;
    while (at < text.size()) {
        size_t start = text.find_first_not_of(' ', at);
        if (start == std::string::npos) break;
        size_t end = text.find(' ', start);
        if (end == std::string::npos) end = text.size();
        words.push_back(text.substr(start, end - start));
        at = end;
    }
    return words;
}

bool ParseCellSizeLimits(const std::string& line, double& minimum, double& maximum) {
    const std::vector<std::string> words = SplitAnswerWords(line);
    double lo = 0.0, hi = 0.0;
    if (!HasForm(words, "Cell", "Size") || !WordToDouble(words[5], lo) || !WordToDouble(words[7], hi)) return false;
    minimum = lo;
    maximum = hi;
    return true;
}

bool ParseNumberOfCellsLimit(const std::string& line, int& maximum) {
    const std::vector<std::string> words = SplitAnswerWords(line);
    return HasForm(words, "Number", "of") && WordToInt(words[8], maximum);
}

int GetCellSizeLimits(PromptDialogue& dialogue, double& minimum, double& maximum, RawLog* raw) {
    if (!ParseCellSizeLimits(AskLimit(dialogue, "cs 9999", raw), minimum, maximum)) {
        dialogue.Prompt().Message(kSystemLimitsFailureText);
        return 0;
    }
    return 1;
}

int GetNumberOfCellsLimit(PromptDialogue& dialogue, int& maximum, RawLog* raw) {
    if (!ParseNumberOfCellsLimit(AskLimit(dialogue, "nc 99999", raw), maximum)) {
        dialogue.Prompt().Message(kSystemLimitsFailureText);
        return 0;
    }
    return 1;
}

}  // namespace rm
