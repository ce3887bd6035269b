#include "output/ascii_file_output.h"

#include <algorithm>

#include "app/dis_export.h"
#include "output/space_check.h"
#include "output/variable_files.h"
#include "output/velocity_files.h"
#include "processing/processing_steps.h"

namespace rm {

namespace {

int Beams(const CSurveyKVRDoc& document) { return std::clamp<int>(document.Data().conf.Nbeams, 0, 4); }

std::vector<std::string> Numbered(const std::string& base, const char* prefix, int beams) {
    std::vector<std::string> paths;
    for (int b = 1; b <= beams; ++b) paths.push_back(base + prefix + std::to_string(b));
    return paths;
}

std::string FolderOf(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? std::string(".") : path.substr(0, slash + 1);
}

std::string NameOf(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

ItemRange RangeOf(const CSurveyKVRDoc& document, const AsciiFileRequest& request) {
    ItemRange range;
    range.first = request.first > 0 ? request.first : 1;
    range.last = request.last > 0 ? request.last : document.ProfileCount();
    return range;
}

ProfileLineBody BodyOf(AsciiOutputKind kind, const AsciiFileRequest& request, size_t componentFiles) {
    const int coords = request.coordinateSystem;
    const int reference = request.velocityReference;
    switch (kind) {
        case AsciiOutputKind::Header:
            return [](TextFile& f, const ProcessingContext& ctx, int slot, size_t) { WriteHeaderLine(f, ctx, slot); };
        case AsciiOutputKind::Gps:
            return [](TextFile& f, const ProcessingContext& ctx, int slot, size_t) { WriteGpsLine(f, ctx, slot); };
        case AsciiOutputKind::SignalStrength:
        case AsciiOutputKind::StdDeviation:
        case AsciiOutputKind::SnRatio: {
            const int code = kind == AsciiOutputKind::SignalStrength ? 2 : kind == AsciiOutputKind::StdDeviation ? 3 : 4;
            return [code](TextFile& f, const ProcessingContext& ctx, int slot, size_t beam) {
                WriteCellValues(f, ctx, slot, code, static_cast<int>(beam), ctx.settings.CoordinateSystem,
                                ctx.settings.VelocityReference);
            };
        }
        case AsciiOutputKind::Velocity:
            return [coords, reference, componentFiles](TextFile& f, const ProcessingContext& ctx, int slot,
                                                       size_t index) {
                if (index < componentFiles) {
                    WriteCellValues(f, ctx, slot, 1, static_cast<int>(index), coords, reference);
                    return;
                }
                // .spd (index == componentFiles) and .dir from the first two components.
                const int cells = ctx.Raw(slot).cells;
                for (int cell = 0; cell < cells; ++cell) {
                    const double u = GetProfileValue(ctx, 1, 0, coords, reference, slot, cell);
                    const double v = GetProfileValue(ctx, 1, 1, coords, reference, slot, cell);
                    const SpeedDirection sd = VelocitySpeedDirection(u, v);
                    f.Write("%8.1f", index == componentFiles ? sd.speed : sd.direction);
                }
            };
        case AsciiOutputKind::Configuration: break;
    }
    return {};
}

// A full pass with `declination` in place of the document's own, which is put back and the
// results computed again with it; a plain pass without one.
bool RecomputeWithDeclination(CSurveyKVRDoc& document, std::optional<double> declination, PassObserver* observer) {
    if (!declination) return document.Recompute(observer);
    double& inForce = document.Data().derived.magneticDeclination;
    const double own = inForce;
    inForce = *declination;
    const bool computed = document.Recompute(observer);
    inForce = own;
    return document.Recompute() && computed;
}

}  // namespace

const char* AsciiOutputTitle(AsciiOutputKind kind) {
    switch (kind) {
        case AsciiOutputKind::Configuration: return "Configuration Data File: ";
        case AsciiOutputKind::Header: return "Header Data File: ";
        case AsciiOutputKind::SignalStrength: return "Signal Strength Data File: ";
        case AsciiOutputKind::StdDeviation: return "Std Deviation Data File: ";
        case AsciiOutputKind::SnRatio: return "SNRatio Data File: ";
        case AsciiOutputKind::Gps: return "GPS Data File: ";
        case AsciiOutputKind::Velocity: return "Velocity Data File: ";
    }
    return "";
}

std::vector<std::string> AsciiOutputPaths(const CSurveyKVRDoc& document, AsciiOutputKind kind,
                                          const AsciiFileRequest& request) {
    const std::string& base = request.basePath;
    switch (kind) {
        case AsciiOutputKind::Configuration: return {base + ".ctl"};
        case AsciiOutputKind::Header: return {base + ".hdr"};
        case AsciiOutputKind::SignalStrength: return Numbered(base, ".a", Beams(document));
        case AsciiOutputKind::StdDeviation: return Numbered(base, ".sd", Beams(document));
        case AsciiOutputKind::SnRatio: return Numbered(base, ".sn", Beams(document));
        case AsciiOutputKind::Gps: return {base + ".gps"};
        case AsciiOutputKind::Velocity: {
            std::vector<std::string> paths;
            for (const std::string& ext : VelocityComponentExtensions(request.coordinateSystem, Beams(document))) {
                paths.push_back(base + ext);
            }
            paths.push_back(base + ".spd");
            paths.push_back(base + ".dir");
            return paths;
        }
    }
    return {};
}

bool WriteAsciiOutput(CSurveyKVRDoc& document, AsciiOutputKind kind, const AsciiFileRequest& request,
                      UserPrompt& prompt, std::vector<std::string>& messages) {
    const ItemRange range = RangeOf(document, request);
    const std::string folder = FolderOf(request.basePath);
    const uint64_t needed =
        AsciiSpaceNeeded(kind, range.first, range.last, document.Data().user.NumberOfCells, Beams(document));
    const std::optional<uint64_t> freeBytes = request.freeBytes ? request.freeBytes : FreeDriveBytes(folder);
    if (freeBytes && SpaceTooSmall(*freeBytes, needed)) {
        prompt.Message(std::string(kNotEnoughSpace) + folder);
        return false;
    }
    const std::vector<std::string> paths = AsciiOutputPaths(document, kind, request);
    bool ok = false;
    if (kind == AsciiOutputKind::Configuration) {
        ok = WriteConfigurationFile(paths.front(), document.Data(), document.Pmk().settings.gpsPresent != 0);
    } else {
        const size_t componentFiles = kind == AsciiOutputKind::Velocity ? paths.size() - 2 : paths.size();
        ProfileLineFiles files(range, BodyOf(kind, request, componentFiles));
        ok = files.Open(paths);
        if (ok) {
            const std::optional<double> declination =
                kind == AsciiOutputKind::Velocity ? request.magneticDeclination : std::nullopt;
            const bool computed = RecomputeWithDeclination(document, declination, &files);
            ok = files.Close() && computed;
        }
    }
    if (!ok) {
        prompt.Message(kWriteFileError);
        return false;
    }
    messages.emplace_back(AsciiOutputTitle(kind));
    for (const std::string& path : paths) messages.push_back("    " + NameOf(path) + " successfully written");
    messages.emplace_back("");
    return true;
}

bool WriteAllAsciiOutputs(CSurveyKVRDoc& document, const AsciiFileRequest& request, UserPrompt& prompt,
                          std::vector<std::string>& messages) {
    for (AsciiOutputKind kind : kAllAsciiOutputKinds) {
        if (!WriteAsciiOutput(document, kind, request, prompt, messages)) return false;
    }
    return true;
}

}  // namespace rm
