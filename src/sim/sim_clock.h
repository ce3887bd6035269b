#pragma once
// Calendar time for synthetic recordings: a start time plus whole seconds, across midnight,
// month ends and leap years.

#include <cstdint>
#include <string>

namespace rm::sim {

struct CivilTime {
    int year = 2024, month = 6, day = 1;
    int hour = 10, minute = 0, second = 0;
};

// Parses "YYYY-MM-DD hh:mm:ss" (or with a "T" between date and time). False on any other text
// or an impossible date or time.
bool ParseCivilTime(const std::string& text, CivilTime& out);

// `t` moved by `seconds` (may be negative).
CivilTime AddSeconds(const CivilTime& t, int64_t seconds);

// The time of day as hhmmss.sss, the form GPS fixes carry.
double HhmmssOf(const CivilTime& t);

}  // namespace rm::sim
