#pragma once
// NMEA 0183 text lines from a GPS receiver or an echo sounder, turned into a small tree that
// holds the newest sentence of each kind.
//
// The tree of newest sentences has one item per sentence id ("GGA", "DPT", ...). The item's
// value is the whole line as received ("$GPGGA,...*5C") and its child holds the fields after
// the id as unnamed text items, field 0 first. A later sentence of the same id overwrites the
// fields it has and appends the ones it has in excess; fields it lacks keep their old text.
// The same tree form is what a recording keeps per profile under "GPSData" and "EsData".
//
// Everything here is pure: bytes in, trees out. The port polling lives in the link layer, and
// the simulator builds its trees with the same code, so a recording stores exactly what a
// live reader stores.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "data/node_tree.h"

namespace rm {

// The value that marks an absent position, depth or velocity.
constexpr double kNmeaNoValue = 32767.0;

// Talker prefixes that the two streams accept by default. A prefix may list alternatives
// separated by "|". The GPS stream takes "GP" and the talkers under which receivers of today send
// their position sentences: GN (several satellite systems combined), GL (GLONASS), GA (Galileo),
// GB (BeiDou), GQ (QZSS) and GI (NavIC). The tree keys a sentence by its id alone ("GGA"), so the
// newest GGA counts whichever talker sent it; the stored line keeps the talker.
constexpr const char* kGpsTalkerPrefix = "GP|GN|GL|GA|GB|GQ|GI";
constexpr const char* kEchoTalkerPrefix = "SD";

// Whether `line` begins with "$" and one of the alternatives of `talkerPrefix` (case ignored);
// `talkerLength`, when given, receives the length of the alternative found.
bool LineHasTalker(const std::string& line, const std::string& talkerPrefix, size_t* talkerLength = nullptr);

// Collects bytes into lines. A line ends at LF, CR or NUL; empty lines are skipped. The buffer
// holds at most 1023 characters: when the 1024th arrives, the oldest 299 are dropped and the
// newest 725 kept, so a stream without line ends never grows the buffer and keeps its tail.
class NmeaLineReader {
public:
    static constexpr size_t kCapacity = 1024;
    static constexpr size_t kKeepOnOverflow = 725;
    static constexpr size_t kDropOnOverflow = kCapacity - kKeepOnOverflow;  // 299

    using LineSink = std::function<void(const std::string& line)>;

    // Feeds `count` bytes; `onLine` is called for every line completed by them.
    void Feed(const uint8_t* data, size_t count, const LineSink& onLine);

    // Discards a partly received line.
    void Clear() { pending_.clear(); }

    // The characters of the line not yet ended.
    const std::string& Pending() const { return pending_; }

private:
    std::string pending_;
};

// Stores one line in the tree of newest sentences. The line must start with "$" followed by
// `talkerPrefix`, or one of its alternatives (case ignored). A "*" found scanning back from the end, before any ",", cuts
// off the checksum (which is not tested). The text after the prefix is split at commas; the
// first word is the id. Returns 1 if a sentence was stored, 0 if the line was dropped.
int ParseNmeaLine(const std::string& line, const std::string& talkerPrefix, const NodeRef& sentences);

// The fields node of sentence `id` in a tree of newest sentences; null when absent. Never
// creates and never emits the tree's debug text.
NodeRef FindSentence(const NodeRef& sentences, const std::string& id);

// The whole line stored for sentence `id`; empty when absent.
std::string SentenceLine(const NodeRef& sentences, const std::string& id);

// Number of fields of a sentence (the id not counted) and the text of field `index`
// (empty when out of range).
int SentenceFieldCount(const NodeRef& fields);
std::string SentenceField(const NodeRef& fields, int index);

// The number test for a field: not empty, nothing but an optionally signed decimal number
// with optional exponent, blanks around allowed. Converts into `value` when given.
bool IsNmeaNumber(const std::string& text, double* value = nullptr);

// The plain text-to-double conversion of a field: the leading number, 0.0 when there is none.
double NmeaFieldToDouble(const std::string& text);

// A complete sentence "$<body>*HH" with the NMEA checksum (XOR of the body's bytes, two
// upper-case hex digits). `body` is the text between "$" and "*", e.g. "GPGGA,123519,...".
std::string FormatNmeaSentence(const std::string& body);

// Reader state of one stream: the line buffer, the talker prefix and the tree of the newest
// sentences received since the last reset.
class NmeaStreamReader {
public:
    explicit NmeaStreamReader(std::string talkerPrefix = kGpsTalkerPrefix);

    const std::string& TalkerPrefix() const { return prefix_; }
    void SetTalkerPrefix(std::string prefix) { prefix_ = std::move(prefix); }

    // Feeds received bytes; returns the number of sentences stored from them.
    int Feed(const uint8_t* data, size_t count);
    int Feed(const std::string& bytes) {
        return Feed(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
    }

    // The newest sentences since the last reset or take. The node stays the reader's: later
    // feeds change it.
    const NodeRef& Sentences() const { return sentences_; }

    // Hands over the newest sentences and starts an empty tree, so that the next profile sees
    // only what arrives after this call.
    NodeRef TakeSentences();

    // Empties the line buffer and the tree.
    void Reset();

    const NmeaLineReader& Lines() const { return lines_; }

private:
    std::string prefix_;
    NmeaLineReader lines_;
    NodeRef sentences_;
};

// A deep copy of a tree of sentences (values and children), so that a stored copy does not
// change when the reader's tree does. A null tree copies to a new empty one.
NodeRef CopySentenceTree(const NodeRef& sentences);

// The tree of newest sentences built from complete lines, as a reader would build it.
NodeRef BuildSentenceTree(const std::vector<std::string>& lines, const std::string& talkerPrefix);

// Names of the per-profile children of a recording's side file.
constexpr const char* kProfileGpsDataKey = "GPSData";
constexpr const char* kProfileEchoDataKey = "EsData";

// Fills a profile's side-file node: a copy of `gpsSentences` under "GPSData" when it is not
// null, a copy of `echoSentences` under "EsData" when it is not null. Earlier children of the
// same names are replaced.
void StoreProfileSentences(const NodeRef& profileNode, const NodeRef& gpsSentences, const NodeRef& echoSentences);

}  // namespace rm
