#ifndef INVENTORY_MACHINE_STATE_WORDS_H_
#define INVENTORY_MACHINE_STATE_WORDS_H_

#include "inventory/machine/machine.h"

// How the words of the tools are understood. A state is fine when all of it is known to be; a word
// in it that means loss makes it critical; everything else, no state at all included, is a warning.

Severity JudgeDevice(const Text& state);
Severity JudgeLogicalDrive(const Text& state);

/// In the words in which a drive is; kelvcmd's report no state, which is fine.
Severity JudgeController(const Text& state);

/// No battery is fine, too.
Severity JudgeBattery(const Text& state);

/// Of something that should not be so: "No", or nothing at all, is fine, all else a warning.
Severity JudgeFlag(const Flag& flag);

/// A rebuild that goes on, or anything that came to no good end, is a warning.
Severity JudgeOperation(const Operation& operation);

/// Of an entry of the manager's log, in the manager's word for it.
Severity JudgeEvent(const Text& severity);

/// The state of a drive or device, or an operation's name.
bool IsRebuild(const Text& text);

/// A drive that waits to take the place of another, and can.
bool IsHotSpare(const State& state);

/// The operation is one, and goes on.
bool IsRebuilding(const Operation& operation);

#endif  // INVENTORY_MACHINE_STATE_WORDS_H_
