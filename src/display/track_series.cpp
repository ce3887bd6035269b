#include "display/track_series.h"

namespace rm {

bool TrackSampleOf(const CSurveyKVRDoc& doc, int item, TrackSample& sample) {
    const SlotResults* results = doc.ResultsOf(item);
    if (results == nullptr || !results->readOk) return false;
    const TrackPoint& point =
        doc.Settings().TrackReference == kTrackRefGps ? results->gpsTrackPoint : results->bottomTrackPoint;
    sample.profile = item;
    sample.east = point.East;
    sample.north = point.North;
    sample.waterEast = results->processed.MeanEast;
    sample.waterNorth = results->processed.MeanNorth;
    sample.shallow = results->shallowWaterFlag != 0;
    return true;
}

TrackOrigin TrackOriginOf(const CSurveyKVRDoc& doc) {
    const RunningState& state = doc.Running();
    TrackOrigin origin;
    origin.known = !IsMissing(state.gpsOriginLatitude) && !IsMissing(state.gpsOriginLongitude);
    if (origin.known) {
        origin.latitude = state.gpsOriginLatitude;
        origin.longitude = state.gpsOriginLongitude;
    }
    return origin;
}

TrackSeries TrackSeriesOf(const CSurveyKVRDoc& doc) {
    TrackSeries series;
    series.origin = TrackOriginOf(doc);
    series.unitSystem = doc.Settings().UnitSystem;
    const int first = doc.WindowStart(), last = doc.WindowEnd();
    if (last >= first) series.samples.reserve(static_cast<size_t>(last - first + 1));
    TrackSample sample;
    for (int item = first; item <= last; ++item)
        if (TrackSampleOf(doc, item, sample)) series.samples.push_back(sample);
    return series;
}

}  // namespace rm
