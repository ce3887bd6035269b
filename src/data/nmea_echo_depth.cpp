#include "data/nmea_echo_depth.h"

#include <cmath>

namespace rm {

namespace {

constexpr double kRadiansPerDegree = 0.0174532925199433;

int DecodeField(const NodeRef& fields, int index, double& value) {
    if (index < 0 || index >= SentenceFieldCount(fields)) return 0;
    double number = 0.0;
    if (!IsNmeaNumber(SentenceField(fields, index), &number)) return 0;
    value = number;
    return 1;
}

}  // namespace

std::string EchoStreamPrefix(const EchoSounderSettings& settings) {
    if (settings.HasCustomSentence() && !settings.customPrefix.empty()) return settings.customPrefix;
    return settings.talkerPrefix;
}

std::string CustomSentenceName(const EchoSounderSettings& settings) {
    return settings.customPrefix + settings.customId;
}

bool SplitSentenceHead(const std::string& line, std::string& prefix, std::string& id) {
    size_t start = (!line.empty() && line[0] == '$') ? 1 : 0;
    size_t end = line.find_first_of(",*", start);
    std::string head = line.substr(start, end == std::string::npos ? std::string::npos : end - start);
    if (head.size() < 3) return false;
    prefix = head.substr(0, 2);
    id = head.substr(2);
    return true;
}

int DecodeDpt(const NodeRef& fields, double& value) { return DecodeField(fields, 0, value); }

int DecodeDbt(const NodeRef& fields, double& value) { return DecodeField(fields, 2, value); }

int DecodeCustom(const NodeRef& fields, int index, double& value) { return DecodeField(fields, index, value); }

bool HasDecodableDepth(const NodeRef& sentences) {
    double ignored = 0.0;
    return DecodeDpt(FindSentence(sentences, "DPT"), ignored) == 1 ||
           DecodeDbt(FindSentence(sentences, "DBT"), ignored) == 1;
}

double ReadEchoDepth(const NodeRef& sentences, const EchoSounderSettings& settings, double pitchDegrees,
                     double rollDegrees, double speedFactor) {
    if (sentences.ItemCount() == 0) return kNmeaNoValue;
    double depth = 0.0;
    bool found = DecodeDpt(FindSentence(sentences, "DPT"), depth) == 1 ||
                 DecodeDbt(FindSentence(sentences, "DBT"), depth) == 1;
    if (!found && settings.HasCustomSentence()) {
        found = DecodeCustom(FindSentence(sentences, settings.customId), settings.customDepthIndex, depth) == 1;
    }
    if (!found || !(depth < kNmeaNoValue)) return kNmeaNoValue;
    if (settings.CorrectForSpeedOfSound) depth *= speedFactor;
    return (depth * settings.Scale + settings.Offset + settings.TransducerDepth) *
           std::cos(pitchDegrees * kRadiansPerDegree) * std::cos(rollDegrees * kRadiansPerDegree);
}

}  // namespace rm
