#include "output/fpx_file.h"

namespace rm {

namespace {

constexpr double kSecondsPerDay = 86400.0;

Variant SampleVariant(const FlowSampleRow& row, double value) {
    switch (row.kind) {
        case FlowValueKind::Long: return Variant(static_cast<int32_t>(value));
        case FlowValueKind::Byte: return Variant(static_cast<uint8_t>(value));
        case FlowValueKind::Duration:
        case FlowValueKind::Date:
        case FlowValueKind::Double: break;
    }
    return Variant(value);
}

NodeRef SampleTableNode(const FlowMeasurement& m) {
    const auto& rows = FlowSampleStructure();
    NodeRef table = NodeRef::MakeNew();
    table.Append("SampleCount", Variant(int32_t{1}));

    NodeRef structure = NodeRef::MakeNew();
    for (const FlowSampleRow& row : rows) {
        NodeRef description = NodeRef::MakeNew();
        description.Append("Unit", Variant(row.unit));
        description.Append("Type", Variant(row.type));
        structure.Append(row.name, Variant(), description);
    }
    table.Append("SampleStructure", Variant(), structure);

    const FlowSample sample = MakeFlowSample(m);
    NodeRef values = NodeRef::MakeNew();
    for (size_t i = 0; i < rows.size(); ++i) {
        // The exchange tree gives the duration in seconds; the text file in days.
        const double value = rows[i].kind == FlowValueKind::Duration ? sample.durationDays * kSecondsPerDay
                                                                      : sample.values[i];
        values.Append(rows[i].name, SampleVariant(rows[i], value));
    }
    NodeRef samples = NodeRef::MakeNew();
    samples.Append("", Variant(), values);
    table.Append("Samples", Variant(), samples);
    return table;
}

}  // namespace

NodeRef BuildFpxTree(const FlowMeasurement& m) {
    NodeRef measurement = NodeRef::MakeNew();
    measurement.Append("FileName", Variant(m.fileName));
    measurement.Append("FilePath", Variant(m.filePath));
    measurement.Append("ApplicationName", Variant(kFlowApplicationName));
    measurement.Append("SystemType", Variant(kFlowSystemType));
    measurement.Append("SystemFrequency", Variant(FlowSystemFrequency(m.system)));
    measurement.Append("SerialNumber", Variant(SystemConfText(m.system, "SerialNumber")));
    measurement.Append("FlowDataType", Variant(kFlowDataType));

    NodeRef collection = NodeRef::MakeNew();
    collection.Append("Settings", Variant(), m.record != nullptr ? m.record->settings : NodeRef());
    collection.Append("System", Variant(), m.system);
    measurement.Append("Collection", Variant(), collection);
    measurement.Append("SampleTable", Variant(), SampleTableNode(m));

    NodeRef measurements = NodeRef::MakeNew();
    measurements.Append("", Variant(), measurement);
    NodeRef root = NodeRef::MakeNew();
    root.Append("FpxVersion", Variant("1.0"));
    root.Append("Measurements", Variant(), measurements);
    return root;
}

bool WriteFpx(std::FILE* file, const FlowMeasurement& measurement) {
    return BuildFpxTree(measurement).Save(file);
}

bool WriteFpxFile(const std::string& path, const FlowMeasurement& measurement, UserPrompt& prompt) {
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        prompt.Message(kUnableToCreateFile + path);
        return false;
    }
    bool ok = WriteFpx(file, measurement);
    ok = std::fclose(file) == 0 && ok;
    return ok;
}

}  // namespace rm
