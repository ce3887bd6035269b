#include "sim/sim_clock.h"

#include <cstdio>

#include "data/civil_date.h"

namespace rm::sim {

namespace {

int64_t FloorDiv(int64_t a, int64_t b) { return a / b - ((a % b != 0) && ((a < 0) != (b < 0)) ? 1 : 0); }

}  // namespace

bool ParseCivilTime(const std::string& text, CivilTime& out) {
    CivilTime t;
    char sep = 0;
    int consumed = 0;
    if (std::sscanf(text.c_str(), "%4d-%2d-%2d%c%2d:%2d:%2d%n", &t.year, &t.month, &t.day, &sep, &t.hour, &t.minute,
                    &t.second, &consumed) != 7 ||
        static_cast<size_t>(consumed) != text.size() || (sep != ' ' && sep != 'T')) {
        return false;
    }
    if (t.month < 1 || t.month > 12 || t.day < 1 || t.hour < 0 || t.hour > 23 || t.minute < 0 || t.minute > 59 ||
        t.second < 0 || t.second > 59 || t.year < 1980 || t.year > 2200) {
        return false;
    }
    // A day past the month's end comes back as another date.
    int y, m, d;
    CivilFromDays(DaysFromCivil(t.year, t.month, t.day), y, m, d);
    if (y != t.year || m != t.month || d != t.day) return false;
    out = t;
    return true;
}

CivilTime AddSeconds(const CivilTime& t, int64_t seconds) {
    const int64_t total =
        DaysFromCivil(t.year, t.month, t.day) * 86400 + t.hour * 3600 + t.minute * 60 + t.second + seconds;
    const int64_t days = FloorDiv(total, 86400);
    const int64_t rest = total - days * 86400;
    CivilTime r;
    CivilFromDays(days, r.year, r.month, r.day);
    r.hour = static_cast<int>(rest / 3600);
    r.minute = static_cast<int>(rest / 60 % 60);
    r.second = static_cast<int>(rest % 60);
    return r;
}

double HhmmssOf(const CivilTime& t) { return t.hour * 10000.0 + t.minute * 100.0 + t.second; }

}  // namespace rm::sim
