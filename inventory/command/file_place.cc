#include "inventory/command/file_place.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string_view>
#include <utility>
#include <vector>

using standin::Descriptor;

namespace {

constexpr int kMostLinks = 40;  // as the kernel has it

std::string Why() { return std::strerror(errno); }

bool AreSame(const struct stat& one, const struct stat& other) {
  return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

bool IsSameFolder(int one, int other) {
  struct stat first {};
  struct stat second {};
  return fstat(one, &first) == 0 && fstat(other, &second) == 0 && AreSame(first, second);
}

/// Others may add names there, and cannot take away ours.
bool IsForAll(int folder) {
  struct stat status {};
  constexpr mode_t kForAll = S_ISVTX | S_IWOTH;
  return fstat(folder, &status) == 0 && (status.st_mode & kForAll) == kForAll;
}

bool IsOfSomebodyElse(const struct stat& status) {
  return status.st_uid != 0 && status.st_uid != geteuid();
}

/// A folder is asked for first: only then does the kernel mount what is mounted on demand.
Descriptor Step(int folder, const std::string& name) {
  constexpr int kFlags = O_PATH | O_NOFOLLOW | O_CLOEXEC;
  const int entered = openat(folder, name.c_str(), kFlags | O_DIRECTORY);
  if (entered >= 0 || (errno != ENOTDIR && errno != ELOOP)) return Descriptor(entered);
  return Descriptor(openat(folder, name.c_str(), kFlags));
}

/// Puts the parts of a path on the way ahead, whose next part is its last element.
void Prepend(std::string_view path, std::vector<std::string>& ahead) {
  // A slash at the end asks for a folder.
  if (path.ends_with('/')) ahead.emplace_back(".");
  while (!path.empty()) {
    const auto slash = path.rfind('/');
    const std::string_view part = path.substr(slash + 1);  // all of it when there is no slash
    if (!part.empty()) ahead.emplace_back(part);
    path = path.substr(0, slash == std::string_view::npos ? 0 : slash);
  }
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
/// its own would not have come through an exec.
void TakeDescriptor(FilePlace& place) {
  const int number = std::stoi(place.name);
  const int flags = fcntl(number, F_GETFL);
  if (flags < 0 || fcntl(number, F_GETFD) != 0 || (flags & O_ACCMODE) == O_RDONLY ||
      fstat(number, &place.status) != 0) {
    place.error = std::strerror(EBADF);
  }
  place.descriptor = number;
  place.exists = true;
}

/// What a link says; "" with errno set when it cannot be read.
std::string ReadLink(int link) {
  char text[PATH_MAX];
  const ssize_t size = readlinkat(link, "", text, sizeof text);
  return {text, size < 0 ? 0 : static_cast<std::size_t>(size)};
}

/// On the way of a path.
class Walk {
 public:
  explicit Walk(const std::string& path) { Turn(path); }

  FilePlace Go() {
    while (GoOn()) {
    }
    return std::move(place_);
  }

 private:
  bool End(std::string why = "") {
    place_.error = std::move(why);
    return false;
  }

  /// Goes on with this path, which is relative to the folder that was reached.
  void Turn(const std::string& path) {
    Prepend(path, ahead_);
    if (path.starts_with('/')) {
      place_.folder = Descriptor(open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    } else if (!place_.folder.IsOpen()) {
      place_.folder = Descriptor(open(".", O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
  }

  /// Returns whether the way goes on.
  bool GoOn() {
    if (!place_.folder.IsOpen()) return End(Why());
    place_.name = std::move(ahead_.back());
    ahead_.pop_back();
    Descriptor here = Step(place_.folder.Get(), place_.name);
    if (!here.IsOpen()) return End(errno == ENOENT && ahead_.empty() ? "" : Why());
    if (fstat(here.Get(), &place_.status) != 0) return End(Why());
    const bool is_link = S_ISLNK(place_.status.st_mode);
    if (IsOfSomebodyElse(place_.status) && (is_link || ahead_.empty()) &&
        IsForAll(place_.folder.Get())) {
      return End(is_link ? "the link " + place_.name + " is somebody else's, in a folder for all"
                         : "it is somebody else's, in a folder for all");
    }
    if (is_link && !IsInProc(place_.folder.Get())) return Follow(here.Get());
    if (is_link) {
      if (ahead_.empty() && HoldsOwnDescriptors(place_.folder.Get())) {
        TakeDescriptor(place_);
        return false;
      }
      // What the kernel's own links say is not always a path.
      here = Descriptor(openat(place_.folder.Get(), place_.name.c_str(), O_PATH | O_CLOEXEC));
      if (!here.IsOpen() || fstat(here.Get(), &place_.status) != 0) return End(Why());
      place_.is_behind = true;
    }
    if (ahead_.empty()) {
      place_.exists = true;
      const bool is_elsewhere = place_.is_behind && S_ISREG(place_.status.st_mode);
      return End(is_elsewhere ? "it is an open file of another process" : "");
    }
    if (!S_ISDIR(place_.status.st_mode)) return End(std::strerror(ENOTDIR));
    place_.folder = std::move(here);
    place_.is_behind = false;
    return true;
  }

  bool Follow(int link) {
    const std::string path = ReadLink(link);
    if (path.empty()) return End(Why());
    if (++links_ > kMostLinks) return End(std::strerror(ELOOP));
    Turn(path);
    return true;
  }

  FilePlace place_;
  std::vector<std::string> ahead_;
  int links_ = 0;
};

}  // namespace

FilePlace FindPlace(const std::filesystem::path& path) {
  return path.empty() ? FilePlace() : Walk(path.native()).Go();
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
    Descriptor above = Step(below.Get(), "..");
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
