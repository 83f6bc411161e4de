#ifndef INVENTORY_RUNS_RECORDING_READER_H_
#define INVENTORY_RUNS_RECORDING_READER_H_

#include <filesystem>

#include "inventory/runs/recording.h"

/// Reads a recording's folder. Nothing outside of it is read, whatever it says, and no more than
/// the bounds in recording_index.h. Throws std::runtime_error with one line on what is wrong:
/// "DIR/recording.json: runs[3].end: is no way to end".
Recording ReadRecording(const std::filesystem::path& folder);

#endif  // INVENTORY_RUNS_RECORDING_READER_H_
