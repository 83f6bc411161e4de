#include "inventory/command/file_place.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "inventory/runs/path_walk.h"

using standin::Descriptor;

namespace {

std::string Why() { return std::strerror(errno); }

bool AreSame(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool IsSameFolder(int one, int other) {
  struct stat first {};
  struct stat second {};
  return fstat(one, &first) == 0 && fstat(other, &second) == 0 && AreSame(first, second);
}

bool IsInProc(int folder) {
  struct statfs system {};
  return fstatfs(folder, &system) == 0 && system.f_type == PROC_SUPER_MAGIC;
}

bool HoldsOwnDescriptors(int folder) {
  const Descriptor own(open("/proc/self/fd", O_PATH | O_CLOEXEC));
  return own.IsOpen() && IsSameFolder(folder, own.Get());
}

/// Takes the descriptor as the place. Only those that the caller of this program opened are meant;
/// its own would not have come through an exec. Returns why it cannot be written to, or "".
std::string TakeDescriptor(const std::string& name, FilePlace& place) {
  place.descriptor = std::stoi(name);
  place.exists = true;
  const int flags = fcntl(place.descriptor, F_GETFL);
  const bool is_given = flags >= 0 && fcntl(place.descriptor, F_GETFD) == 0 &&
                        (flags & O_ACCMODE) != O_RDONLY &&
                        fstat(place.descriptor, &place.status) == 0;
  return is_given ? "" : std::strerror(EBADF);
}

/// Goes to the end of the way. Returns why it leads nowhere, or "".
std::string Find(PathWalk& walk, FilePlace& place) {
  while (walk.IsAhead()) {
    place.is_behind = false;
    if (!walk.Step()) return errno == ENOENT && !walk.IsAhead() ? "" : Why();
    const int folder = walk.GetFolder().Get();
    const bool is_link = walk.IsAtLink();
    if ((is_link || !walk.IsAhead()) && IsPlanted(folder, walk.GetStatus())) {
      const std::string why = "somebody else's, in a folder for all";
      return (is_link ? "the link " + walk.GetName() + " is " : "it is ") + why;
    }
    if (!is_link) continue;
    if (!IsInProc(folder)) {
      if (!walk.Follow()) return Why();
      continue;
    }
    if (!walk.IsAhead() && HoldsOwnDescriptors(folder))
      return TakeDescriptor(walk.GetName(), place);
    if (!walk.GoBehind()) return Why();
    place.is_behind = true;
  }
  place.exists = true;
  place.status = walk.GetStatus();
  const bool is_elsewhere = place.is_behind && S_ISREG(place.status.st_mode);
  return is_elsewhere ? "it is an open file of another process" : "";
}

}  // namespace

FilePlace FindPlace(const std::filesystem::path& path) {
  FilePlace place;
  if (path.empty()) return place;
  PathWalk walk(path.native());
  place.error = Find(walk, place);
  place.folder = walk.TakeFolder();
  place.name = walk.GetName();
  return place;
}

std::filesystem::path PathOf(const FilePlace& place) {
  const std::filesystem::path folder = "/proc/self/fd/" + std::to_string(place.folder.Get());
  // What has no name of its own there, as "..", is no link of anybody's.
  const bool is_named = place.name != "." && place.name != ".." && !place.is_behind;
  if (!is_named) return std::filesystem::canonical(folder / place.name);
  return std::filesystem::read_symlink(folder) / place.name;
}

bool AreInConflict(const FilePlace& one, const FilePlace& other) {
  if (one.IsNone() || other.IsNone() || one.exists != other.exists) return false;
  if (!one.exists)
    return one.name == other.name && IsSameFolder(one.folder.Get(), other.folder.Get());
  const bool are_given = one.descriptor >= 0 && other.descriptor >= 0;
  return AreSame(one.status, other.status) && !are_given && !S_ISCHR(one.status.st_mode);
}

bool IsInside(const FilePlace& place, const FilePlace& folder) {
  if (place.IsNone() || place.descriptor >= 0) return false;
  if (AreInConflict(place, folder)) return true;
  if (!folder.exists) return false;
  Descriptor below(fcntl(place.folder.Get(), F_DUPFD_CLOEXEC, 0));
  while (below.IsOpen()) {
    struct stat status {};
    if (fstat(below.Get(), &status) == 0 && AreSame(status, folder.status)) return true;
    Descriptor above(openat(below.Get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (IsSameFolder(below.Get(), above.Get())) break;  // the root's
    below = std::move(above);
  }
  return false;
}

std::string OpenInPlace(const FilePlace& place, Descriptor& opened) {
  if (place.descriptor >= 0) {
    opened = Descriptor(fcntl(place.descriptor, F_DUPFD_CLOEXEC, 0));
    return opened.IsOpen() ? "" : Why();
  }
  const int folder = place.folder.Get();
  constexpr int kFlags = O_WRONLY | O_NOCTTY | O_CLOEXEC;
  if (!place.exists) {
    opened = Descriptor(openat(folder, place.name.c_str(), kFlags | O_CREAT | O_EXCL, 0666));
    return opened.IsOpen() ? "" : Why();
  }
  const bool is_folder = S_ISDIR(place.status.st_mode);
  if (!is_folder && place.status.st_nlink > 1 && IsForAll(folder)) {
    return "it is a hard link, in a folder for all";
  }
  // Without waiting for a reader.
  const int follow = place.is_behind ? 0 : O_NOFOLLOW;
  opened = Descriptor(openat(folder, place.name.c_str(), kFlags | O_NONBLOCK | follow));
  if (!opened.IsOpen()) {
    const bool is_unread = errno == ENXIO && S_ISFIFO(place.status.st_mode);
    return is_unread ? "nobody reads from this pipe" : Why();
  }
  struct stat status {};
  if (fstat(opened.Get(), &status) != 0) return Why();
  if (!AreSame(status, place.status)) return "somebody has just replaced it";
  if (fcntl(opened.Get(), F_SETFL, 0) != 0) return Why();
  if (!S_ISREG(status.st_mode)) return "";
  // The kernel takes set-id bits from what is written, but not for root.
  const bool has_set_id = (status.st_mode & (S_ISUID | S_ISGID)) != 0;
  if (has_set_id && geteuid() == 0 && fchmod(opened.Get(), status.st_mode & 0777) != 0) {
    return Why();
  }
  return ftruncate(opened.Get(), 0) == 0 ? "" : Why();
}
