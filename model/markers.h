#ifndef MODEL_MARKERS_H_
#define MODEL_MARKERS_H_

#include "schema/published_texts.h"

// Texts of the tools that collectors look for and records read, too: a walk whose two sides
// disagree about one of them runs off the end.

/// kelvcmd's line of an array's member drives, behind the array's letter.
inline constexpr char kStripeOrderLabel[] = " stripe order (Channel/SCSI ID)";

/// The heading of a logical drive.
inline constexpr char kLogicalDriveLabel[] = "Logical drive number ";

#endif  // MODEL_MARKERS_H_
