#pragma once
// The document's fields that the settings transfer sets from the instrument's answers and that
// acquisition and the setup dialogs read: the collection modes, which optional blocks the
// frames carry, the limits fished from the instrument, and the frame sizes of the collection
// that was started. The instrument's records themselves live in CKvrData.

#include "data/kvr_file_layout.h"

namespace rm {

// GPS sources of the document's GPS settings.
constexpr int kGpsSourceExternal = 1;
constexpr int kGpsSourceInternal = 2;

// Source of the temperature or salinity used by processing: -1 not chosen yet, 0 the user's
// value, 2 the CTD sensor.
constexpr int kSourceNotChosen = -1;
constexpr int kSourceUser = 0;
constexpr int kSourceCtd = 2;

// The byte sizes of a profile frame and a wave frame for the current setup.
struct ProfileSizes {
    int HeaderSize = 80;
    int ProfileSize = 0;    // the whole profile frame, checksum included
    int WaveFrameSize = 0;  // 0 without waves
    int WaveSamples = 0;    // 0 without waves
};

struct InstrumentLinkState {
    int BottomTrackMode = 0;  // 0 none, 1 bottom track, 2 shallow-water ping
    int PCMode = 0;           // 1 in pulse-coherent mode (PCMode byte, or Bottom Track 2)
    int WavesEnabled = 0;     // the PressureTimeSeries interval byte; 0 without wave bursts
    WaveSetup Waves;          // wave burst set-up from the user setup
    int CtdDataPresent = 0;
    int ExtSensorDataPresent = 0;
    int TemperatureSource = kSourceNotChosen;
    int SalinitySource = kSourceNotChosen;

    // The document's GPS choice, set by its owner; only the internal source adds a frame block.
    bool GpsOn = false;
    int GpsSource = kGpsSourceExternal;

    // Told by the instrument when asked with values that are too large; -1 / 0 while unknown.
    double MinCellSize = -1.0;
    double MaxCellSize = -1.0;
    int MaxNumberOfCells = 0;
    // Whether the firmware offers bottom tracking, for the setup dialog.
    int BottomTrackAvailable = 0;
    // Pulse-coherent mode can be chosen in the options dialog.
    bool PCModeAvailable = false;

    ProfileSizes Sizes;
};

}  // namespace rm
