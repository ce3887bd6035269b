#include "data/nmea_sentences.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>

namespace rm {

namespace {

bool IsLineEnd(uint8_t byte) { return byte == '\n' || byte == '\r' || byte == '\0'; }

char UpperAscii(char c) { return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 'a' + 'A') : c; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

// Length of the decimal number that starts at `text[from]`: optional sign, digits with an
// optional fraction (at least one digit in all), optional exponent. 0 when none starts there.
size_t NumberLength(const std::string& text, size_t from) {
    size_t i = from;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    size_t digits = 0;
    while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
    if (i < text.size() && text[i] == '.') {
        ++i;
        while (i < text.size() && IsDigit(text[i])) ++i, ++digits;
    }
    if (digits == 0) return 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        size_t j = i + 1;
        if (j < text.size() && (text[j] == '+' || text[j] == '-')) ++j;
        size_t expDigits = 0;
        while (j < text.size() && IsDigit(text[j])) ++j, ++expDigits;
        if (expDigits > 0) i = j;  // a bare "e" is not part of the number
    }
    return i - from;
}

// Converts a number already checked by NumberLength with strtod, which handles overflow and
// underflow; the "." is swapped for the decimal point of the current locale, since a user
// interface may have set one that is not ".".
double ConvertNumber(const std::string& text, size_t from, size_t length) {
    std::string number = text.substr(from, length);
    const char* point = std::localeconv()->decimal_point;
    size_t dot = number.find('.');
    if (dot != std::string::npos && point != nullptr && point[0] != '\0') number.replace(dot, 1, point);
    return std::strtod(number.c_str(), nullptr);
}

}  // namespace

void NmeaLineReader::Feed(const uint8_t* data, size_t count, const LineSink& onLine) {
    for (size_t i = 0; i < count; ++i) {
        uint8_t byte = data[i];
        if (IsLineEnd(byte)) {
            if (!pending_.empty()) {
                std::string line;
                line.swap(pending_);
                if (onLine) onLine(line);
            }
            continue;
        }
        pending_.push_back(static_cast<char>(byte));
        if (pending_.size() == kCapacity) pending_.erase(0, kDropOnOverflow);
    }
}

bool LineHasTalker(const std::string& line, const std::string& talkerPrefix, size_t* talkerLength) {
    if (line.empty() || line[0] != '$') return false;
    size_t from = 0;
    for (;;) {
        const size_t bar = talkerPrefix.find('|', from);
        const size_t length = (bar == std::string::npos ? talkerPrefix.size() : bar) - from;
        bool same = line.size() >= 1 + length;
        for (size_t i = 0; same && i < length; ++i)
            same = UpperAscii(line[1 + i]) == UpperAscii(talkerPrefix[from + i]);
        if (same) {
            if (talkerLength != nullptr) *talkerLength = length;
            return true;
        }
        if (bar == std::string::npos) return false;
        from = bar + 1;
    }
}

int ParseNmeaLine(const std::string& line, const std::string& talkerPrefix, const NodeRef& sentences) {
    if (sentences.IsNull()) return 0;
    size_t talkerLength = 0;
    if (!LineHasTalker(line, talkerPrefix, &talkerLength)) return 0;
    const size_t start = 1 + talkerLength;

    // Cut the checksum: the last "*" counts only if no "," stands behind it.
    size_t end = line.size();
    for (size_t i = line.size(); i > start; --i) {
        char c = line[i - 1];
        if (c == ',') break;
        if (c == '*') {
            end = i - 1;
            break;
        }
    }

    std::vector<std::string> words;
    std::string word;
    for (size_t i = start; i < end; ++i) {
        if (line[i] == ',') {
            words.push_back(word);
            word.clear();
        } else {
            word.push_back(line[i]);
        }
    }
    words.push_back(word);
    const std::string& id = words[0];
    if (id.empty()) return 0;

    int index = sentences.FindIndex(id);
    NodeRef fields;
    if (index < 0) {
        fields = NodeRef::MakeNew();
        sentences.Append(id, Variant(line), fields);
    } else {
        fields = sentences.ItemChild(index);
        if (fields.IsNull()) fields = NodeRef::MakeNew();
        sentences.SetAt(index, Variant(line));  // drops the child; hung back below
        sentences.SetChild(index, fields);
    }
    for (size_t k = 1; k < words.size(); ++k) fields.SetAt(static_cast<int>(k - 1), Variant(words[k]));
    return 1;
}

NodeRef FindSentence(const NodeRef& sentences, const std::string& id) {
    int index = sentences.FindIndex(id);
    return index < 0 ? NodeRef() : sentences.ItemChild(index);
}

std::string SentenceLine(const NodeRef& sentences, const std::string& id) {
    int index = sentences.FindIndex(id);
    return index < 0 ? std::string() : sentences.ItemValue(index).ToText();
}

int SentenceFieldCount(const NodeRef& fields) { return fields.ItemCount(); }

std::string SentenceField(const NodeRef& fields, int index) { return fields.ItemValue(index).ToText(); }

bool IsNmeaNumber(const std::string& text, double* value) {
    size_t first = 0;
    while (first < text.size() && IsBlank(text[first])) ++first;
    size_t last = text.size();
    while (last > first && IsBlank(text[last - 1])) --last;
    if (first == last) return false;
    size_t length = NumberLength(text, first);
    if (length != last - first) return false;
    if (value) *value = ConvertNumber(text, first, length);
    return true;
}

double NmeaFieldToDouble(const std::string& text) {
    size_t first = 0;
    while (first < text.size() && IsBlank(text[first])) ++first;
    size_t length = NumberLength(text, first);
    return length == 0 ? 0.0 : ConvertNumber(text, first, length);
}

std::string FormatNmeaSentence(const std::string& body) {
    uint8_t sum = 0;
    for (char c : body) sum = static_cast<uint8_t>(sum ^ static_cast<uint8_t>(c));
    char tail[4];
    std::snprintf(tail, sizeof tail, "*%02X", static_cast<unsigned>(sum));
    return "$" + body + tail;
}

NmeaStreamReader::NmeaStreamReader(std::string talkerPrefix)
    : prefix_(std::move(talkerPrefix)), sentences_(NodeRef::MakeNew()) {}

int NmeaStreamReader::Feed(const uint8_t* data, size_t count) {
    int stored = 0;
    lines_.Feed(data, count, [&](const std::string& line) { stored += ParseNmeaLine(line, prefix_, sentences_); });
    return stored;
}

NodeRef NmeaStreamReader::TakeSentences() {
    NodeRef taken = sentences_;
    sentences_ = NodeRef::MakeNew();
    return taken;
}

void NmeaStreamReader::Reset() {
    lines_.Clear();
    sentences_ = NodeRef::MakeNew();
}

NodeRef CopySentenceTree(const NodeRef& sentences) {
    NodeRef copy = NodeRef::MakeNew();
    for (int i = 0; i < sentences.ItemCount(); ++i) {
        NodeRef child = sentences.ItemChild(i);
        copy.Append(sentences.ItemName(i), sentences.ItemValue(i),
                    child.IsNull() ? NodeRef() : CopySentenceTree(child));
    }
    return copy;
}

NodeRef BuildSentenceTree(const std::vector<std::string>& lines, const std::string& talkerPrefix) {
    NodeRef tree = NodeRef::MakeNew();
    for (const std::string& line : lines) ParseNmeaLine(line, talkerPrefix, tree);
    return tree;
}

namespace {

void HangCopy(const NodeRef& parent, const char* key, const NodeRef& sentences) {
    NodeRef copy = CopySentenceTree(sentences);
    int index = parent.FindIndex(key);
    if (index < 0) {
        parent.Append(key, Variant(), copy);
    } else {
        parent.SetChild(index, copy);
    }
}

}  // namespace

void StoreProfileSentences(const NodeRef& profileNode, const NodeRef& gpsSentences, const NodeRef& echoSentences) {
    if (profileNode.IsNull()) return;
    if (!gpsSentences.IsNull()) HangCopy(profileNode, kProfileGpsDataKey, gpsSentences);
    if (!echoSentences.IsNull()) HangCopy(profileNode, kProfileEchoDataKey, echoSentences);
}

}  // namespace rm
