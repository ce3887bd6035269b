#include "output/profile_dump.h"

#include <cstdio>

#include "app/dis_export.h"
#include "data/text_file.h"
#include "processing/processing_inputs.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {

void Append(std::string& out, const char* format, double a, double b = 0.0, double c = 0.0) {
    char text[160];
    std::snprintf(text, sizeof text, format, a, b, c);
    out += text;
}

class DumpWriter : public PassObserver {
public:
    explicit DumpWriter(TextFile& file) : file_(file) {}
    // The dump's literals carry their own "\r\n": written as they are.
    void OnProfile(const ProcessingContext& ctx, int item, int slot, bool /*readOk*/) override {
        file_.PutBytes(ProfileDumpText(ctx, item, slot));
    }

private:
    TextFile& file_;
};

}  // namespace

std::string ProfileDumpText(const ProcessingContext& ctx, int item, int slot) {
    const SlotResults& r = ctx.slots[static_cast<size_t>(slot)];
    const ProcessedProfile& p = r.processed;
    const ProfileWorkingValues& w = ctx.working;
    const double blank = ctx.data.user.BlankDistance * 0.01;
    const double size = ctx.data.user.CellSizeCm * 0.01;
    const double sensorDepth = GetTransducerDepth(ctx);
    std::string out = "\r\n-------------------------------";
    char text[64];
    std::snprintf(text, sizeof text, "\r\nPROFILE %4d", item);
    out += text;
    Append(out, "\r\nDepth %.2f", p.Depth);
    Append(out, "\r\nSensorDepth %.2f", sensorDepth);
    Append(out, "\r\nBlanking %.2f", blank);
    Append(out, "\r\nCellSize %.2f", size);
    std::snprintf(text, sizeof text, "\r\nValidCells %d", r.waterCells);
    out += text;
    Append(out, "\r\nBoatVelX %.4f", p.BoatEast);
    Append(out, "\r\nBoatVelY %.4f", p.BoatNorth);
    Append(out, "\r\nVelTop %.2f %.2f", w.TopMean.East, w.TopMean.North);
    Append(out, "\r\nVelMid %.2f %.2f", w.MeasuredMean.East, w.MeasuredMean.North);
    Append(out, "\r\nVelBot %.2f %.2f\r\n", w.BottomMean.East, w.BottomMean.North);
    Append(out, "\r\nDischargeTop %.4f", p.TopQ);
    Append(out, "\r\nDischargeMid %.4f", p.MiddleQ);
    Append(out, "\r\nDischargeBot %.4f", p.BottomQ);
    out += "\r\n";
    VelocityArrays velocity{};
    GetVelocities(ctx, slot, velocity);
    for (int cell = 0; cell < r.waterCells && cell < kMaxCells; ++cell) {
        std::snprintf(text, sizeof text, "\r\nCell %2d", cell);
        out += text;
        Append(out, " %.2f %.2f %.2f", sensorDepth + blank + (cell + 0.5) * size, velocity[0][static_cast<size_t>(cell)],
               velocity[1][static_cast<size_t>(cell)]);
    }
    return out;
}

bool WriteProfileDumpFile(CSurveyKVRDoc& document, const std::string& path, UserPrompt& prompt) {
    TextFile file;
    if (!file.Open(path)) {
        prompt.Message(kWriteFileError);
        return false;
    }
    DumpWriter writer(file);
    const bool computed = document.Recompute(&writer);
    const bool written = file.Close();
    if (!written) prompt.Message(kWriteFileError);
    return computed && written;
}

}  // namespace rm
