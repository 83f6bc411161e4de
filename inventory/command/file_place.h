#ifndef INVENTORY_COMMAND_FILE_PLACE_H_
#define INVENTORY_COMMAND_FILE_PLACE_H_

#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "standin/descriptor.h"

/// Where a path leads, found once: later changes of links on the way change nothing. It holds a
/// name in a folder, and what has that name, which is no link; or one of the descriptors that this
/// program was started with.
struct FilePlace {
  std::string error;           ///< Why it leads nowhere; "" when it does.
  standin::Descriptor folder;  ///< For `...at` calls only.
  std::string name;            ///< In the folder.
  int descriptor = -1;         ///< Of /dev/stdout and the like; else -1.
  bool exists = false;         ///< Whether there is something; `status` describes it.
  bool is_behind = false;      ///< It is what a link in /proc leads to, which is no path.
  struct stat status {};

  /// Nothing was named.
  bool IsNone() const { return error.empty() && !folder.IsOpen(); }
};

/// Follows the path as the kernel does, link by link. A link in a folder that all may write to, as
/// /tmp, is followed only if root or the user of this program made it, and what somebody else has
/// put there is refused. No path gives no place.
FilePlace FindPlace(const std::filesystem::path& path);

/// A path that leads to the place by no link. Needs /proc.
std::filesystem::path PathOf(const FilePlace& place);

/// Whether writing to one would disturb the other: both are the same file, or will be. Devices, and
/// descriptors that this program was given, can be shared.
bool AreInConflict(const FilePlace& one, const FilePlace& other);

/// Whether the place is this folder's or below it, so that it goes when the folder is replaced.
bool IsInside(const FilePlace& place, const FilePlace& folder);

/// Opens what is at the place for writing, or makes a file there; a regular file loses its content
/// unless it came as a descriptor. Returns why it cannot, or "".
std::string OpenInPlace(const FilePlace& place, standin::Descriptor& opened);

#endif  // INVENTORY_COMMAND_FILE_PLACE_H_
