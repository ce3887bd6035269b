// The edge dialog of a live recording as a question to the person: at the start of the
// recording for the bank the boat leaves, at its end for the other one. Answers are checked
// and stored as the dialog's OK checks and stores them.

#include <string>

#include "app/survey_document.h"
#include "processing/edges.h"

namespace rm {

namespace {

// What the dialog shows for bank `side`: the values of the Discharge keys in force.
EdgeDialogValues ShownEdge(const NodeRef& discharge, int side, bool atStart) {
    const std::string name = side == kSideLeft ? "Left" : "Right";
    EdgeDialogValues shown;
    shown.side = side;
    shown.atStart = atStart;
    shown.method = discharge.GetTyped<int32_t>(name + "BankMethod", shown.method);
    shown.fieldValue = shown.method == kBankMethodUserInput
                           ? discharge.GetTyped<double>(name + "UserEstimate", 0.0)
                           : discharge.GetTyped<int32_t>(name + "NumProfiles", 1);
    shown.measuredDistance = discharge.GetTyped<double>("Measured" + name + "Distance", 0.0);
    return shown;
}

}  // namespace

void CSurveyKVRDoc::AskEdge(bool atStart) {
    if (edgeQuestion_ == nullptr || app_.Get(app_keys::AskForEdgeDistances) == 0) return;
    const NodeRef discharge = DischargeNode(root_);
    const int startBank = discharge.GetTyped<int32_t>("CorrectedStartBankSide", 0) == 1 ? kSideRight : kSideLeft;
    const int side = atStart ? startBank : 1 - startBank;
    EdgeDialogValues shown = ShownEdge(discharge, side, atStart);
    // A field at fault keeps the dialog open with the focus on it: the question is put again,
    // showing what was entered, a few times before it counts as cancelled.
    for (int attempt = 0; attempt < kEdgeQuestionTries; ++attempt) {
        std::optional<EdgeDialogValues> answer = edgeQuestion_->AskEdge(shown);
        if (!answer) return;
        answer->atStart = atStart;
        const DialogCheck check = CheckEdgeDialog(answer->side, answer->method, answer->fieldValue);
        if (check.ok) {
            StoreEdgeDialog(discharge, *answer);
            return;
        }
        prompt_.Message(check.message);
        shown = *answer;
    }
}

}  // namespace rm
