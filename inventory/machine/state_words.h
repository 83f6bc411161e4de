#ifndef INVENTORY_MACHINE_STATE_WORDS_H_
#define INVENTORY_MACHINE_STATE_WORDS_H_

#include <string>

#include "inventory/machine/finding.h"
#include "inventory/machine/machine.h"

// How the words of the tools are understood. A state is fine when all of it is known to be; a word
// in it that means loss makes it critical; everything else, no state at all included, is a warning.

Severity JudgeDevice(const std::string& state);
Severity JudgeLogicalDrive(const std::string& state);

/// In the words in which a drive is; kelvcmd's report no state, which is fine.
Severity JudgeController(const std::string& status);

/// No battery is fine, too.
Severity JudgeBattery(const std::string& status);

/// Of something that should not be so: "No", or nothing at all, is fine, all else a warning.
Severity JudgeFlag(const std::string& flag);

/// The controller's background operation: a rebuild that goes on, or one that came to no good end.
Severity JudgeOperation(const Controller& controller);

/// The state of a drive or device, or an operation's name.
bool IsRebuild(const std::string& text);

/// The controller's operation is one, and goes on.
bool IsRebuilding(const Controller& controller);

/// The device's own flag, or anything else in its place than "No".
bool PredictsFailure(const Device& device);

/// The drive says so, or anything else than "No".
bool IsBlocked(const LogicalDrive& drive);

#endif  // INVENTORY_MACHINE_STATE_WORDS_H_
