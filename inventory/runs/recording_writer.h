#ifndef INVENTORY_RUNS_RECORDING_WRITER_H_
#define INVENTORY_RUNS_RECORDING_WRITER_H_

#include <filesystem>
#include <string>

#include "inventory/runs/recording.h"

/// Why no recording can be written there, for a person; "" when it can: nothing is there yet, or an
/// empty folder, or a recording, which the new one replaces.
std::string WhyNoRecordingFits(const std::filesystem::path& folder);

/// Writes the folder as a whole or not at all: beside its place, to which it is switched in one
/// step. No link at the place itself is followed: it may be new since the place was found. Signals
/// wait meanwhile. Returns "", or why it could not be written.
std::string WriteRecording(const Recording& recording, const std::filesystem::path& place);

#endif  // INVENTORY_RUNS_RECORDING_WRITER_H_
