#include "output/fdx_file.h"

#include <cstdio>

namespace rm {

namespace {

constexpr const char* kEol = "\r\n";

void Tabs(std::string& out, int depth) { out.append(static_cast<size_t>(depth), '\t'); }

// "<name " at `depth` tabs; the blank stays also when no attribute follows.
void OpenTag(std::string& out, int depth, const std::string& name) {
    Tabs(out, depth);
    out += "<" + name + " ";
}

// name="value" at `depth` tabs.
void Attribute(std::string& out, int depth, const std::string& name, const std::string& value) {
    Tabs(out, depth);
    out += name + "=\"" + value + "\"";
}

void CloseTag(std::string& out, int depth, const std::string& name) {
    Tabs(out, depth);
    out += "</" + name + ">";
}

std::string Format(const char* format, double value) {
    char text[512];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string FormatInt(int value) { return std::to_string(value); }

// A tree under an element of its own at `depth`: <name Node="TRUE"> entries </name>.
void NodeElement(std::string& out, int depth, const std::string& name, const NodeRef& node) {
    OpenTag(out, depth, name);
    out += kEol;
    Attribute(out, depth + 1, "Node", "TRUE");
    out += ">";
    AppendFdxNode(out, node, depth + 1);
    out += kEol;
    CloseTag(out, depth, name);
}

void MeasurementHead(std::string& out, const FlowMeasurement& m) {
    out += kEol;
    OpenTag(out, 2, "Measurement");
    out += kEol;
    const std::pair<const char*, std::string> attributes[] = {
        {"FileName", m.fileName},
        {"FilePath", m.filePath},
        {"ApplicationName", kFlowApplicationName},
        {"SystemType", kFlowSystemType},
        {"SystemFrequency", FlowSystemFrequency(m.system)},
        {"SerialNumber", SystemConfText(m.system, "SerialNumber")},
        {"FlowDataType", kFlowDataType},
    };
    const size_t count = sizeof attributes / sizeof attributes[0];
    for (size_t i = 0; i < count; ++i) {
        Attribute(out, 3, attributes[i].first, attributes[i].second);
        out += i + 1 < count ? kEol : ">";
    }
}

// The record's settings tree and system tree. False when either is missing.
bool Collection(std::string& out, const FlowMeasurement& m) {
    const NodeRef settings = m.record != nullptr ? m.record->settings : NodeRef();
    out += kEol;
    OpenTag(out, 3, "Collection");
    out += ">";
    out += kEol;
    NodeElement(out, 4, "Settings", settings);
    out += kEol;
    NodeElement(out, 4, "System", m.system);
    out += kEol;
    CloseTag(out, 3, "Collection");
    return !settings.IsNull() && !m.system.IsNull();
}

std::string SampleValueText(const FlowSampleRow& row, double value) {
    switch (row.kind) {
        case FlowValueKind::Long:
        case FlowValueKind::Byte: return FormatInt(static_cast<int>(value));
        case FlowValueKind::Duration: return Format("%.10f", value);
        case FlowValueKind::Double:
        case FlowValueKind::Date: break;
    }
    return Format("%.5f", value);
}

// The table of one sample. Stops after the table's head, with false, for a record that cannot
// fill it.
bool SampleTable(std::string& out, const FlowMeasurement& m) {
    out += kEol;
    OpenTag(out, 3, "SampleTable");
    out += kEol;
    Attribute(out, 4, "SampleCount", "1");
    out += ">";
    out += kEol;
    if (!FlowRecordUsable(m)) return false;

    const auto& rows = FlowSampleStructure();
    OpenTag(out, 4, "SampleStructure");
    out += ">";
    out += kEol;
    for (const FlowSampleRow& row : rows) {
        OpenTag(out, 5, row.name);
        out += kEol;
        Attribute(out, 6, "Unit", row.unit);
        out += kEol;
        Attribute(out, 6, "Type", row.type);
        out += ">";
        out += kEol;
        CloseTag(out, 5, row.name);
        out += kEol;
    }
    CloseTag(out, 4, "SampleStructure");
    out += kEol;

    const FlowSample sample = MakeFlowSample(m);
    OpenTag(out, 4, "Sample");
    out += ">";
    out += kEol;
    for (size_t i = 0; i < rows.size(); ++i) {
        OpenTag(out, 5, rows[i].name);
        out += kEol;
        if (rows[i].kind == FlowValueKind::Date) {
            Attribute(out, 6, "VARIANT_TIME", Format("%.10f", sample.startDate));
            out += kEol;
            Attribute(out, 6, "Value", FlowDateText(sample.start));
        } else {
            Attribute(out, 6, "Value", SampleValueText(rows[i], sample.values[i]));
        }
        out += "/>";
        out += kEol;
    }
    CloseTag(out, 4, "Sample");
    out += kEol;
    CloseTag(out, 3, "SampleTable");
    return true;
}

bool Put(std::FILE* file, const std::string& text) {
    return file != nullptr && std::fwrite(text.data(), 1, text.size(), file) == text.size();
}

}  // namespace

void AppendFdxNode(std::string& out, const NodeRef& node, int depth) {
    const int count = node.ItemCount();
    for (int i = 0; i < count; ++i) {
        const std::string& key = node.ItemName(i);
        const std::string name = key.empty() ? "i" + std::to_string(i) : key;
        const NodeRef child = node.ItemChild(i);
        out += kEol;
        if (!child.IsNull()) {
            NodeElement(out, depth, name, child);
            continue;
        }
        // A key naming a spare field is always shown as 0, whatever it holds.
        const bool spare = key.find("Spare") != std::string::npos;
        OpenTag(out, depth, name);
        out += kEol;
        Attribute(out, depth + 1, "Value", spare ? std::string("0") : node.ItemValue(i).ToText());
        out += "/>";
    }
}

std::string FdxHeadText() {
    return "<?xml version=\"1.0\"?>\r\n<FlowDataExchange \r\n\tFdxVersion=\"1.0\">\r\n\t<Measurements >";
}

std::string FdxMeasurementText(const FlowMeasurement& measurement) {
    std::string out;
    MeasurementHead(out, measurement);
    const bool collection = Collection(out, measurement);
    const bool table = SampleTable(out, measurement);
    // A block whose trees or table are missing stays open: readers see it as broken.
    if (collection && table) {
        out += kEol;
        CloseTag(out, 2, "Measurement");
    }
    return out;
}

std::string FdxTailText() { return "\r\n\t</Measurements>\r\n</FlowDataExchange>"; }

bool WriteFdxHead(std::FILE* file) { return Put(file, FdxHeadText()); }

bool WriteFdxMeasurement(std::FILE* file, const FlowMeasurement& measurement) {
    return Put(file, FdxMeasurementText(measurement));
}

bool WriteFdxTail(std::FILE* file) { return Put(file, FdxTailText()); }

bool WriteFdxText(std::FILE* file, const std::string& text) { return Put(file, text); }

}  // namespace rm
