// CheckParameter: the table of rules in the checker's order and the rules on single values
// (names, comments, intervals, depths, declination, salinity, temperature). The rules of the
// profiling layout are in profiling_rules.cpp.

#include "setup/check_parameter.h"

#include "setup/frequency_limits.h"
#include "setup/rule_set.h"
#include "setup/setup_text.h"

namespace rm {

namespace {

using namespace setup_nodes;
using rules::Refuse;
using rules::RuleInputs;

void CheckDeploymentName(const RuleInputs& in, ParameterCheck& check) {
    const size_t length = in.tree.Text(kSetup, "DeploymentName").size();
    if (length == 0)
        Refuse(check, "The file name must not be left blank.");
    else if (length > 5)
        Refuse(check, "The file name must not be more than 5 characters.");
}

void CheckCommentLine(const RuleInputs& in, ParameterCheck& check, const char* key, const char* message) {
    if (in.tree.Text(kSetup, key).size() > 60) Refuse(check, message);
}
void CheckCommentLine1(const RuleInputs& in, ParameterCheck& check) {
    CheckCommentLine(in, check, "CommentLine1", "The first comment line must not\nbe more than 60 characters.");
}
void CheckCommentLine2(const RuleInputs& in, ParameterCheck& check) {
    CheckCommentLine(in, check, "CommentLine2", "The second comment line must not\nbe more than 60 characters.");
}
void CheckCommentLine3(const RuleInputs& in, ParameterCheck& check) {
    CheckCommentLine(in, check, "CommentLine3", "The third comment line must not\nbe more than 60 characters.");
}

void CheckAveragingInterval(const RuleInputs& in, ParameterCheck& check) {
    const double interval = in.tree.Number(kSetup, "AveragingInterval");
    const bool pulseCoherent = in.tree.Number(kSetup, "PCMode") != 0.0;
    if (!(interval >= 5.0 || pulseCoherent))
        Refuse(check, "The averaging interval must\nbe between 5 and 43200 seconds.");
}

void CheckProfilingInterval(const RuleInputs& in, ParameterCheck& check) {
    const double profiling = in.tree.Number(kSetup, "ProfilingInterval");
    const double averaging = in.tree.Number(kSetup, "AveragingInterval");
    const bool bottomTrack = in.tree.Number(kOptions, "BottomTrack") != 0.0;
    if (!(profiling >= averaging))
        Refuse(check, "The profiling interval must be greater\nthan or equal to the averaging interval.");
    else if (profiling < 10.0)
        Refuse(check, "The profiling interval must\nbe between 10 and 43200 seconds.");
    else if (bottomTrack && profiling > averaging + 10.0)
        Refuse(check,
               "The profiling interval can be no more than 10 seconds greater\nthan the averaging interval for "
               "Bottom Tracking systems.");
}

// A depth in centimetres from 0 to 5 m (16.4042 ft in the English message), with the message of
// the mounting depth or of the echo sounder.
void CheckDepthUpToFiveMetres(const RuleInputs& in, ParameterCheck& check, const char* node, const char* key,
                              const char* metricFormat, const char* englishFormat) {
    const double depthCm = in.tree.Number(node, key);
    if (depthCm >= 0.0 && AtMost(depthCm, 500.0)) return;
    if (in.metric)
        Refuse(check, FormatText(metricFormat, 0.0, 5.0));
    else
        Refuse(check, FormatText(englishFormat, 0.0, 16.4042));
}

constexpr const char* kMountingMetric = "Mounting depth should be in\nthe range of %5.2f to %5.2f m.";
constexpr const char* kMountingEnglish = "Mounting depth should be in\nthe range of %5.2f to %5.2f ft.";

void CheckFixedMountingDepth(const RuleInputs& in, ParameterCheck& check) {
    CheckDepthUpToFiveMetres(in, check, kSetup, "FixedMountingDepthInCm", kMountingMetric, kMountingEnglish);
}
void CheckEstimatedDepth(const RuleInputs& in, ParameterCheck& check) {
    CheckDepthUpToFiveMetres(in, check, kOther, "EstimatedDepth", kMountingMetric, kMountingEnglish);
}
void CheckEchoSounderMountingDepth(const RuleInputs& in, ParameterCheck& check) {
    CheckDepthUpToFiveMetres(in, check, kOther, "EchoSounderMountingDepthInCm",
                             "Echo sounder mounting depth should be in\nthe range of %5.2f to %5.2f m.",
                             "Echo sounder mounting depth should be in\nthe range of %5.2f to %5.2f ft.");
}

void CheckMountingMethod(const RuleInputs&, ParameterCheck&) {}

// The text is set but the result stays valid: a declination out of range passes.
void CheckMagneticDeclination(const RuleInputs& in, ParameterCheck& check) {
    const double declination = in.tree.Number(kOther, "MagneticDeclination");
    if (!(declination >= -360.0 && declination <= 360.0))
        check.message = FormatText("Magnetic declination should be in\nthe range of %5.2f to %5.2f deg.", -360.0, 360.0);
}

void CheckUserSalinity(const RuleInputs& in, ParameterCheck& check) {
    const double salinity = in.tree.Number(kSetup, "UserSalinity");
    if (!(salinity >= 0.0 && salinity <= 60.0))
        Refuse(check, FormatText("Water salinity should be in the range of %.0f to %.0f.", 0.0, 60.0));
}

void CheckTemperatureMode(const RuleInputs& in, ParameterCheck& check) {
    const double mode = in.tree.Number(kSetup, "TemperatureMode");
    const bool sensor = in.tree.Number(kConf, "TemperatureInstalled") != 0.0;
    if (mode == 0.0 || (mode == 1.0 && sensor)) return;
    Refuse(check, sensor ? "Temperature Mode must be either USER or MEASURED."
                         : "Temperature Mode can only be set to NO for systems without a temperature sensor.");
}

// Stored in degrees C whatever the unit system; the English message names 23 and 122 deg F.
void CheckUserTemperature(const RuleInputs& in, ParameterCheck& check) {
    const double temperature = in.tree.Number(kSetup, "UserTemperature");
    if (temperature >= -5.0 && temperature <= 50.0) return;
    if (in.metric)
        Refuse(check, FormatText("Water Temperature should be in the range of %5.1f to %5.1f deg C.", -5.0, 50.0));
    else
        Refuse(check, FormatText("Water Temperature should be in the range of %5.1f to %5.1f deg F.", 23.0, 122.0));
}

struct NamedRule {
    const char* name;
    void (*check)(const RuleInputs&, ParameterCheck&);
};

constexpr NamedRule kRules[] = {
    {"DeploymentName", CheckDeploymentName},
    {"CommentLine1", CheckCommentLine1},
    {"CommentLine2", CheckCommentLine2},
    {"CommentLine3", CheckCommentLine3},
    {"AveragingInterval", CheckAveragingInterval},
    {"ProfilingInterval", CheckProfilingInterval},
    {"FixedMountingDepthInCm", CheckFixedMountingDepth},
    {"EstimatedDepth", CheckEstimatedDepth},
    {"MountingMethod", CheckMountingMethod},
    {"MagneticDeclination", CheckMagneticDeclination},
    {"UserSalinity", CheckUserSalinity},
    {"TemperatureMode", CheckTemperatureMode},
    {"UserTemperature", CheckUserTemperature},
    {"NumberOfCells", rules::CheckNumberOfCells},
    {"CellSizeInCm", rules::CheckCellSize},
    {"BlankingDistanceInCm", rules::CheckBlankingDistance},
    {"AbsoluteProfilingRange", rules::CheckAbsoluteProfilingRange},
    {"ProfilingRange", rules::CheckProfilingRange},
    {"EchoSounderMountingDepthInCm", CheckEchoSounderMountingDepth},
};

}  // namespace

ParameterCheck CheckParameter(const std::string& name, const NodeRef& system) {
    ParameterCheck check;
    for (const NamedRule& rule : kRules) {
        if (name != rule.name) continue;
        check.known = true;
        try {
            const RuleInputs inputs{SetupTreeReader(system), SetupTreeReader(system).Metric()};
            rule.check(inputs, check);
        } catch (const VariantConversionError& error) {
            Refuse(check, std::string("A setting needed by ") + rule.name + " could not be read: " + error.what());
        }
        break;
    }
    return check;
}

const std::vector<std::string>& CheckedParameterNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (const NamedRule& rule : kRules) all.emplace_back(rule.name);
        return all;
    }();
    return names;
}

std::vector<RuleFailure> CheckSetup(const NodeRef& system) {
    std::vector<RuleFailure> failures;
    for (const std::string& name : CheckedParameterNames()) {
        ParameterCheck check = CheckParameter(name, system);
        if (!check.Valid()) failures.push_back({name, std::move(check.message)});
    }
    return failures;
}

}  // namespace rm
