#pragma once
// How the core speaks to the person at the program: a message, a yes/no question, a file to
// save to, progress of long work. The desktop program answers with dialogs, the command-line
// tool with stderr and fixed answers, the tests with a recorder that keeps the exact words.

#include <string>
#include <vector>

namespace rm {

class UserPrompt {
public:
    virtual ~UserPrompt() = default;
    virtual void Message(const std::string& text) = 0;
    // A message box with a title of its own. A prompt that shows no titles shows the text alone.
    virtual void TitledMessage(const std::string& title, const std::string& text) {
        (void)title;
        Message(text);
    }
    virtual bool AskYesNo(const std::string& question) = 0;
    // A path chosen in a save dialog; empty when the person cancels.
    virtual std::string AskSavePath(const std::string& filter, const std::string& defaultExtension,
                                    const std::string& suggestedPath) = 0;
    virtual void Progress(int done, int total, const std::string& what) = 0;
};

// Prints messages to stderr, answers every question with a fixed answer, cancels save dialogs.
class StderrPrompt : public UserPrompt {
public:
    explicit StderrPrompt(bool answerYes = false) : answerYes_(answerYes) {}
    void Message(const std::string& text) override;
    void TitledMessage(const std::string& title, const std::string& text) override;
    bool AskYesNo(const std::string& question) override;
    std::string AskSavePath(const std::string& filter, const std::string& defaultExtension,
                            const std::string& suggestedPath) override;
    void Progress(int done, int total, const std::string& what) override;

private:
    bool answerYes_;
};

// Keeps every message and question; answers from a script (yes by default).
class RecordingPrompt : public UserPrompt {
public:
    std::vector<std::string> messages;
    std::vector<std::string> questions;
    std::vector<std::string> titles;  // the title of each titled message, in order
    bool answerYes = true;
    std::string savePath;  // returned by AskSavePath
    int lastProgressDone = -1, lastProgressTotal = -1;
    std::vector<std::string> progressTexts;  // the text of every progress report, in order

    void Message(const std::string& text) override { messages.push_back(text); }
    void TitledMessage(const std::string& title, const std::string& text) override {
        titles.push_back(title);
        messages.push_back(text);
    }
    bool AskYesNo(const std::string& question) override {
        questions.push_back(question);
        return answerYes;
    }
    std::string AskSavePath(const std::string&, const std::string&, const std::string&) override {
        return savePath;
    }
    void Progress(int done, int total, const std::string& what) override {
        progressTexts.push_back(what);
        lastProgressDone = done;
        lastProgressTotal = total;
    }
};

}  // namespace rm
