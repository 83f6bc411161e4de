#ifndef SCHEMA_PUBLISHED_TEXTS_H_
#define SCHEMA_PUBLISHED_TEXTS_H_

// Texts that the plug-in and the readers of what it publishes have to agree on, each in one place:
// the plug-in's rooms and the command's include this header, and nothing else of each other.

/// The tools, as raw records name them behind their folder.
inline constexpr char kToolFolder[] = "./kraid/";
inline constexpr char kKelvcmd[] = "kelvcmd";
inline constexpr char kHrconf[] = "hrconf";
inline constexpr char kArcconf[] = "arcconf";

/// The command whose output makes a controller, and the headings of its sections.
inline constexpr char kGetConfigWord[] = "getconfig";
inline constexpr char kControllerHeading[] = "Controller information";
inline constexpr char kPhysicalDeviceHeading[] = "Physical device information";

/// What all tools print behind the last line of an output.
inline constexpr char kEndMarker[] = "Command completed successfully";

/// What the exception says that leaves a collection when an output ends before its end marker.
inline constexpr char kOutputEndsTooEarly[] = "vector";

/// What the plug-in publishes for a version that a newer tool does not print.
inline constexpr char kNotProvided[] = "Not provided";

/// In the identifier of a disk group of the newer tools, before its logical drive's number.
inline constexpr char kGroupsDriveMark[] = "LogicalDrv";

/// The entries that the reader of the RAID manager's log makes up.
inline constexpr char kManagerLogOpened[] = "SpawnedProcess: ./kraid/krmgr.sh ";
inline constexpr char kManagerLogEnded[] = "No RAID Manager log entries.";

#endif  // SCHEMA_PUBLISHED_TEXTS_H_
