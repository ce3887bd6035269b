#pragma once
// The start of a discharge measurement: a new CDischargeData for a data set, with its settings
// node, references, the instrument's description and the parameters kept with it.

#include <memory>
#include <string>

#include "data/kvr_data.h"
#include "processing/discharge_data.h"

namespace rm {

// What the data set gives a new measurement.
struct MeasurementSource {
    std::string fileName;       // the data file
    NodeRef discharge;          // the data set's Discharge node, shared by reference
    int32_t trackReference = 1;
    int32_t velocityReference = 1;
    int32_t depthReference = 0;  // 0 bottom track, other echo sounder
    double magneticDeclination = 0.0;
    double transducerDepth = 0.0;  // m
    // The "Mean HW (m)" and "Mean TW (m)" fields of the edge dialogs, recorded and reported.
    double startMeanHW = 0.0, startMeanTW = 0.0, endMeanHW = 0.0, endMeanTW = 0.0;
};

// Replaces `current` with a new measurement. The old record lives on while something else (the
// summary list) holds it. With `inherited` the references, the depth reference and the settings
// node come from the old record (when there is one); otherwise from `source`. The system text
// and the kept parameters come from the instrument's records. The Discharge defaults are
// registered, then StartMeanHW, StartMeanTW, EndMeanHW, EndMeanTW and MagneticDeclination are
// written into the Discharge node. The new record is active.
std::shared_ptr<CDischargeData> StartMeasurement(std::shared_ptr<CDischargeData>& current,
                                                 const MeasurementSource& source, bool inherited,
                                                 const CKvrData& data);

// The measurement of a recording opened for playback: the same record as StartMeasurement makes
// (not inherited), but the Discharge defaults and the recorded values (StartMeanHW ...
// MagneticDeclination) are only created where missing, so what was saved with the recording
// stays as it was.
std::shared_ptr<CDischargeData> OpenMeasurement(std::shared_ptr<CDischargeData>& current,
                                                const MeasurementSource& source, const CKvrData& data);

// The Discharge node of a measurement's settings.
NodeRef MeasurementDischargeNode(const CDischargeData& measurement);

}  // namespace rm
