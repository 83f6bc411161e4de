#ifndef INVENTORY_COMMAND_PROCESS_SETUP_H_
#define INVENTORY_COMMAND_PROCESS_SETUP_H_

/// Mends what the caller of this program may have left behind: standard descriptors that are not
/// open, ends of children that are ignored, signals that are blocked. To be called first of all.
void SetUpProcess();

#endif  // INVENTORY_COMMAND_PROCESS_SETUP_H_
