#ifndef INVENTORY_BASE_PROGRAM_H_
#define INVENTORY_BASE_PROGRAM_H_

/// What the command calls itself, in messages and documents.
inline constexpr char kProgramName[] = "kraid-inventory";
inline constexpr char kProgramVersion[] = KRAID_VERSION;

#endif  // INVENTORY_BASE_PROGRAM_H_
