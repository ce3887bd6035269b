#include "data/user_prompt.h"

#include <cstdio>

namespace rm {

void StderrPrompt::Message(const std::string& text) { std::fprintf(stderr, "%s\n", text.c_str()); }

void StderrPrompt::TitledMessage(const std::string& title, const std::string& text) {
    std::fprintf(stderr, "%s: %s\n", title.c_str(), text.c_str());
}

bool StderrPrompt::AskYesNo(const std::string& question) {
    std::fprintf(stderr, "%s [%s]\n", question.c_str(), answerYes_ ? "Yes" : "No");
    return answerYes_;
}

std::string StderrPrompt::AskSavePath(const std::string&, const std::string&, const std::string&) { return {}; }

void StderrPrompt::Progress(int done, int total, const std::string& what) {
    std::fprintf(stderr, "%s %d/%d\n", what.c_str(), done, total);
}

}  // namespace rm
