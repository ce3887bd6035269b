#pragma once
// What the track map draws, read from the document's window of profiles: for each profile
// held, the boat's position in the track coordinates of the track reference (metres east and
// north of the track's origin), the depth-averaged water velocity and whether the profile used
// the shallow-water ping; and the GPS position of the origin, when GPS gave one, so that the
// grid can be labelled in latitude and longitude. Read afresh at every paint: the map keeps no
// data of its own.

#include <vector>

#include "app/survey_document.h"

namespace rm {

struct TrackSample {
    int profile = 0;                 // one-based item number of the document
    double east = 0.0, north = 0.0;  // m from the track origin
    float waterEast = MissingValueF, waterNorth = MissingValueF;  // cm/s, MissingValue when none
    bool shallow = false;            // the profile used the shallow-water ping

    bool HasWaterVelocity() const { return waterEast < MissingValueF && waterNorth < MissingValueF; }
};

struct TrackOrigin {
    bool known = false;  // the data have GPS and a first fix was taken
    double latitude = 0.0, longitude = 0.0;
};

struct TrackSeries {
    std::vector<TrackSample> samples;  // in profile order
    TrackOrigin origin;
    int unitSystem = 1;                // 1 metric, else English
};

// The profiles of the window that were read, by the document's track reference (1 bottom
// track, 2 GPS).
TrackSeries TrackSeriesOf(const CSurveyKVRDoc& doc);
// One profile of the window; false when it is not held or was not read.
bool TrackSampleOf(const CSurveyKVRDoc& doc, int item, TrackSample& sample);
// The GPS origin of the document's track coordinates.
TrackOrigin TrackOriginOf(const CSurveyKVRDoc& doc);

}  // namespace rm
