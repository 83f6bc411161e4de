#include "inventory/command/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "inventory/runs/path_walk.h"

namespace {

/// Why the file could not be replaced when all has been collected; "" when it could, as far as that
/// can be known.
std::string WhyNotReplaced(const FilePlace& place) {
  struct statx known {};
  constexpr unsigned kClosed = STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND;
  const int folder = place.folder.Get();
  if (statx(folder, "", AT_EMPTY_PATH, 0, &known) == 0 && (known.stx_attributes & kClosed) != 0) {
    return "its folder is closed: nothing in it may be replaced";
  }
  if (!place.exists) return "";
  const char* const name = place.name.c_str();
  if (statx(folder, name, AT_SYMLINK_NOFOLLOW, 0, &known) == 0 &&
      (known.stx_attributes & STATX_ATTR_MOUNT_ROOT) != 0) {
    return "it is mounted there from elsewhere, and cannot be replaced";
  }
  // This takes away no file: the kernel says that it is no folder, but what forbids it comes first.
  if (unlinkat(folder, name, AT_REMOVEDIR) == 0 || errno == ENOTDIR) return "";
  if (errno == EPERM) return "it is kept from being replaced, by its folder or an attribute";
  return std::strerror(errno);
}

/// The new file gets owner, group and permissions of the one that it replaces, as far as it may be
/// given away: permissions that were for another group or owner are nobody else's.
void TakeAfter(const FilePlace& place, int descriptor) {
  const struct stat& old = place.status;
  const mode_t mask = umask(0);
  umask(mask);
  mode_t mode = 0666 & ~mask;
  if (place.exists && fchown(descriptor, old.st_uid, old.st_gid) == 0) {
    mode = old.st_mode & 0666;
  } else if (place.exists && old.st_uid == geteuid()) {
    mode = old.st_mode & 0606;
  }
  // Where it cannot be, the file is for its owner, or as its file system has them all.
  fchmod(descriptor, mode);
}

}  // namespace

OutputFile::OutputFile(FilePlace place) : place_(std::move(place)) {
  if (place_.IsNone()) {
    file_ = stdout;
    return;
  }
  error_ = place_.error;
  if (!error_.empty()) return;
  is_replaced_ = place_.descriptor < 0 && (!place_.exists || S_ISREG(place_.status.st_mode));
  standin::Descriptor opened;
  if (!is_replaced_) {
    error_ = OpenInPlace(place_, opened);
  } else if (error_ = WhyNotReplaced(place_); error_.empty()) {
    opened = standin::Descriptor(unfinished_.Create(place_.folder.Get()));
    if (!opened.IsOpen()) Fail();
  }
  if (!error_.empty()) return;
  file_ = fdopen(opened.Get(), "wb");
  if (file_ == nullptr) {
    Fail();
  } else {
    opened.Release();
  }
}

OutputFile::~OutputFile() {
  if (file_ != nullptr && file_ != stdout) std::fclose(file_);
}

void OutputFile::SetLastWords(std::string_view text) {
  if (!is_replaced_ || !error_.empty()) return;
  const standin::Descriptor file(last_words_.Create(place_.folder.Get()));
  if (!file.IsOpen()) return Fail();
  const ssize_t written = write(file.Get(), text.data(), text.size());
  if (written != static_cast<ssize_t>(text.size())) {
    if (written >= 0) errno = ENOSPC;  // for the rest
    return Fail();
  }
  TakeAfter(place_, file.Get());
  last_words_.MoveAtTheEnd(place_.name);
}

bool OutputFile::Restart() {
  if (!error_.empty()) return false;
  if (!is_begun_) return true;
  if (!is_replaced_ || std::fflush(file_) != 0 || ftruncate(fileno(file_), 0) != 0) return false;
  std::rewind(file_);
  return true;
}

void OutputFile::Write(std::string_view text) {
  is_begun_ = true;
  if (error_.empty() && std::fwrite(text.data(), 1, text.size(), file_) != text.size()) Fail();
}

void OutputFile::Finish() {
  if (!error_.empty()) return;
  if (std::fflush(file_) != 0) return Fail();
  if (!is_replaced_) return;
  struct stat now {};
  const int folder = place_.folder.Get();
  if (fstatat(folder, place_.name.c_str(), &now, AT_SYMLINK_NOFOLLOW) == 0 &&
      IsPlanted(folder, now)) {
    error_ = "somebody else has put something there meanwhile";
    last_words_.Remove();  // it is not ours to replace
    return;
  }
  TakeAfter(place_, fileno(file_));  // not before: nobody else reads what is not whole
  if (fsync(fileno(file_)) != 0 || !unfinished_.MoveTo(place_.name)) return Fail();
  last_words_.Remove();
}

void OutputFile::Fail() {
  broken_pipe_ = errno == EPIPE;
  error_ = std::strerror(errno);
}
