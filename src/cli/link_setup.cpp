#include "cli/link_commands.h"

#include "cli/command.h"
#include "data/kvr_data.h"
#include "data/record_dumps.h"
#include "data/system_tree.h"
#include "data/variant.h"
#include "link/record_transfer.h"
#include "link/user_setup_retrieval.h"
#include "setup/apply_setting.h"
#include "setup/check_parameter.h"
#include "setup/configuration_manager.h"

namespace rm::cli {

namespace {

// The `System` node as the setup dialog sees it after the retrieval: the records and what the
// instrument told about itself.
NodeRef SystemTreeOf(const CKvrData& kvr, const InstrumentLinkState& state, SystemDocumentFields& fields) {
    NodeRef system = NodeRef::MakeNew();
    fields.BottomTrackInstalled = static_cast<uint8_t>(state.BottomTrackAvailable != 0);
    FillTree(system, kvr.conf, kvr.user, fields);
    if (state.MaxNumberOfCells > 0) {
        SystemOtherNode(system).SetValue("MaxNumberOfCells", Variant(static_cast<int16_t>(state.MaxNumberOfCells)));
    }
    return system;
}

// Shows every rule the setup breaks; true when it breaks none.
bool SetupPassesEveryRule(const NodeRef& system, UserPrompt& prompt) {
    const std::vector<RuleFailure> failures = CheckSetup(system);
    for (const RuleFailure& failure : failures) prompt.Message(failure.rule + ": " + failure.message);
    return failures.empty();
}

// Loads the configuration and applies the assignments; false after printing why not. A setup
// to be saved must pass every rule, as a configuration is checked so when it is loaded: what is
// saved always loads again. That is settled before anything is sent.
bool ApplyChoices(const SetupChoices& choices, const NodeRef& system, UserPrompt& prompt) {
    if (!choices.loadConfig.empty()) {
        ConfigurationManager manager(choices.configFolder, prompt);
        if (!manager.Load(choices.loadConfig, system)) return false;
        if (!SetupPassesEveryRule(system, prompt)) return false;
    }
    if (!choices.assignments.empty()) {
        const ApplyResult applied = ApplySettings(system, choices.assignments);
        if (!applied.applied) {
            prompt.Message(applied.message);
            return false;
        }
    }
    if (!choices.saveConfig.empty() && !SetupPassesEveryRule(system, prompt)) {
        prompt.Message(kSaveConfigurationErrorText);
        return false;
    }
    return true;
}

}  // namespace

int RunSetupCommand(SerialPortFactory& factory, const SetupChoices& choices, UserPrompt& prompt, std::ostream& out) {
    std::unique_ptr<SerialPort> port = OpenChosenPort(factory, choices.instrument, prompt);
    if (!port) return kExitFailure;
    PromptDialogue dialogue(*port, prompt, "");
    CKvrData kvr;
    InstrumentLinkState state;
    const int retrieved = RetrieveUserSetup(dialogue, kvr, state);
    if (retrieved != kRetrievalDone) {
        prompt.Message(RetrievalFailureText(retrieved));
        return kExitFailure;
    }

    SystemDocumentFields fields;
    const NodeRef system = SystemTreeOf(kvr, state, fields);
    if (!ApplyChoices(choices, system, prompt)) return kExitFailure;

    const bool changed = !choices.loadConfig.empty() || !choices.assignments.empty();
    if (changed) {
        try {
            ReadTree(system, kvr.conf, kvr.user, fields);
        } catch (const VariantConversionError& e) {
            prompt.Message(std::string("A setting could not be read: ") + e.what());
            return kExitFailure;
        }
        const auto sent = EncodeUser(kvr.user, kvr.conf);
        if (!TransmitUserSettings(dialogue, kvr)) return kExitFailure;
        if (!GetUserRecord(dialogue, kvr, state)) return kExitFailure;
        if (EncodeUser(kvr.user, kvr.conf) != sent) {
            prompt.Message("The user settings read back from the instrument differ from those sent.");
            return kExitFailure;
        }
    }
    DumpSetup(out, kvr.user);

    if (!choices.saveConfig.empty()) {
        ConfigurationManager manager(choices.configFolder, prompt);
        if (!manager.Save(choices.saveConfig, system)) return kExitFailure;
    }
    return kExitOk;
}

}  // namespace rm::cli
