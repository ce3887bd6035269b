#include "output/station_file.h"

#include <fstream>
#include <set>
#include <sstream>

namespace rm {

namespace {

std::string Trim(const std::string& text) {
    const size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string::npos) return "";
    const size_t end = text.find_last_not_of(" \t");
    return text.substr(begin, end - begin + 1);
}

bool ValidKey(const std::string& key) {
    if (key.empty()) return false;
    for (char c : key) {
        const bool ok = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
        if (!ok) return false;
    }
    return true;
}

}  // namespace

bool ParseStationText(const std::string& text, ReportFields& fields, std::string& error) {
    fields.clear();
    std::set<std::string> seen;
    std::istringstream in(text);
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const std::string trimmed = Trim(line);
        if (trimmed.empty() || trimmed[0] == '#' || trimmed[0] == ';') continue;
        const size_t equals = trimmed.find('=');
        const std::string key = equals == std::string::npos ? "" : Trim(trimmed.substr(0, equals));
        if (equals == std::string::npos || !ValidKey(key)) {
            error = "line " + std::to_string(number) + ": expected Key=Value with a key of letters, digits and _";
            fields.clear();
            return false;
        }
        if (!seen.insert(key).second) {
            error = "line " + std::to_string(number) + ": the key " + key + " is given twice";
            fields.clear();
            return false;
        }
        fields.push_back({key, Trim(trimmed.substr(equals + 1))});
    }
    return true;
}

bool ReadStationFile(const std::string& path, ReportFields& fields, std::string& error) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        error = path + ": cannot open the station file";
        fields.clear();
        return false;
    }
    std::ostringstream text;
    text << file.rdbuf();
    if (!ParseStationText(text.str(), fields, error)) {
        error = path + ": " + error;
        return false;
    }
    return true;
}

}  // namespace rm
