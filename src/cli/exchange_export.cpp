#include "cli/exchange_export.h"

#include <cstdio>

#include "output/fdx_file.h"
#include "output/fpx_file.h"

namespace rm::cli {

bool ExportFdxFile(ProcessingSession& session, const std::string& out) {
    if (!session.document->Recompute()) return false;
    std::FILE* file = std::fopen(out.c_str(), "wb");
    if (file == nullptr) {
        session.prompt.Message(kUnableToCreateFile + out);
        return false;
    }
    bool ok = WriteFdxHead(file);
    ok = WriteFdxMeasurement(file, FlowMeasurementOf(*session.document)) && ok;
    ok = WriteFdxTail(file) && ok;
    ok = std::fclose(file) == 0 && ok;
    return ok;
}

bool ExportFpxFile(ProcessingSession& session, const std::string& out) {
    if (!session.document->Recompute()) return false;
    return WriteFpxFile(out, FlowMeasurementOf(*session.document), session.prompt);
}

}  // namespace rm::cli
