#pragma once
// Water depth from the tree of newest echo sounder sentences (see nmea_sentences.h): DPT,
// then DBT, then a sentence the user marked, corrected for the sounder's scale, offset,
// mounting depth, the speed of sound and the boat's tilt.

#include <string>

#include "data/node_tree.h"
#include "data/nmea_sentences.h"

namespace rm {

struct EchoSounderSettings {
    std::string talkerPrefix = kEchoTalkerPrefix;
    // The sentence the user marked as holding the depth: its talker prefix, its id and the
    // index of the depth among the fields after the id. No custom sentence while the index is
    // below 0 or the id is empty.
    std::string customPrefix;
    std::string customId;
    int customDepthIndex = -1;
    double TransducerDepth = 0.0;  // m below the surface
    double Offset = 0.0;           // m added to the sounder's depth
    double Scale = 1.0;
    bool CorrectForSpeedOfSound = false;

    bool HasCustomSentence() const { return customDepthIndex >= 0 && !customId.empty(); }
};

// The talker prefix the echo stream must accept: the custom sentence's prefix when one is
// marked and has a prefix, else `talkerPrefix`.
std::string EchoStreamPrefix(const EchoSounderSettings& settings);

// The custom sentence as the side file names it: prefix and id joined ("PXDEP").
std::string CustomSentenceName(const EchoSounderSettings& settings);

// Splits the head of a line ("$SDDPT,..." or "SDDPT") into a two-character talker prefix and
// the id after it. Returns false when the head is shorter than three characters.
bool SplitSentenceHead(const std::string& line, std::string& prefix, std::string& id);

// Depth fields: DPT field 0, DBT field 2 (metres), a custom sentence's field `index`.
// Each returns 1 and sets `value` when the field holds a number, else 0.
int DecodeDpt(const NodeRef& fields, double& value);
int DecodeDbt(const NodeRef& fields, double& value);
int DecodeCustom(const NodeRef& fields, int index, double& value);

// True when a DPT or a DBT of the tree decodes: what a wait for the echo sounder waits for.
bool HasDecodableDepth(const NodeRef& sentences);

// The corrected depth in metres, or 32767.0 when no sentence gives one. Raw depth D comes from
// DPT, else DBT, else the custom sentence. D is multiplied by `speedFactor` when
// CorrectForSpeedOfSound is set; the result is (D x Scale + Offset + TransducerDepth) x
// cos(pitch) x cos(roll), the angles in degrees. A D of 32767.0 or more gives 32767.0.
double ReadEchoDepth(const NodeRef& sentences, const EchoSounderSettings& settings, double pitchDegrees,
                     double rollDegrees, double speedFactor);

}  // namespace rm
