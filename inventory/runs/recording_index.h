#ifndef INVENTORY_RUNS_RECORDING_INDEX_H_
#define INVENTORY_RUNS_RECORDING_INDEX_H_

#include <cstddef>

// What the writer and the reader of a recording's folder agree on; see docs/recordings.md.

inline constexpr char kRecordingIndex[] = "recording.json";
inline constexpr int kRecordingMajor = 1;
inline constexpr int kRecordingMinor = 0;

inline constexpr std::size_t kLargestIndex = std::size_t{16} << 20;
inline constexpr std::size_t kLargestRecordedFile = std::size_t{64} << 20;
inline constexpr std::size_t kLargestRecording = std::size_t{384} << 20;
inline constexpr std::size_t kMostRecordedRuns = 100'000;
inline constexpr int kMostRecordedPasses = 100;

#endif  // INVENTORY_RUNS_RECORDING_INDEX_H_
