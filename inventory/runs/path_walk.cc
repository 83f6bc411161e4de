#include "inventory/runs/path_walk.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

using standin::Descriptor;

namespace {

constexpr int kMostLinks = 40;  // as the kernel has it

}  // namespace

PathWalk::PathWalk(std::string_view path) {
  Prepend(path);
  if (!path.starts_with('/')) ahead_.emplace_back(".");
}

/// Puts the parts of a path on the way ahead.
void PathWalk::Prepend(std::string_view path) {
  // A slash at the end asks for a folder.
  if (path.ends_with('/')) ahead_.emplace_back(".");
  const bool is_absolute = path.starts_with('/');
  while (!path.empty()) {
    const auto slash = path.rfind('/');
    const std::string_view part = path.substr(slash + 1);  // all of it when there is no slash
    if (!part.empty()) ahead_.emplace_back(part);
    path = path.substr(0, slash == std::string_view::npos ? 0 : slash);
  }
  if (is_absolute) ahead_.emplace_back("/");
}

bool PathWalk::Step() {
  if (here_.IsOpen() && !S_ISDIR(status_.st_mode)) {
    errno = ENOTDIR;
    return false;
  }
  if (here_.IsOpen()) folder_ = std::move(here_);
  name_ = std::move(ahead_.back());
  ahead_.pop_back();
  // A folder is asked for first: only then does the kernel mount what is mounted on demand.
  if (Reach(O_NOFOLLOW | O_DIRECTORY)) return true;
  return (errno == ENOTDIR || errno == ELOOP) && Reach(O_NOFOLLOW);
}

bool PathWalk::Reach(int flags) {
  // Only the first name, "/" or ".", needs no folder.
  const int folder = folder_.IsOpen() ? folder_.Get() : AT_FDCWD;
  here_ = Descriptor(openat(folder, name_.c_str(), O_PATH | O_CLOEXEC | flags));
  return here_.IsOpen() && fstat(here_.Get(), &status_) == 0;
}

bool PathWalk::Follow() {
  char text[PATH_MAX];
  const ssize_t size = readlinkat(here_.Get(), "", text, sizeof text);
  here_ = Descriptor();
  if (size > 0 && ++links_ <= kMostLinks) {
    Prepend({text, static_cast<std::size_t>(size)});
    return true;
  }
  if (size >= 0) errno = ELOOP;
  return false;
}

bool PathWalk::GoBehind() { return Reach(0); }

bool IsForAll(int folder) {
  struct stat status {};
  constexpr mode_t kForAll = S_ISVTX | S_IWOTH;
  return fstat(folder, &status) != 0 || (status.st_mode & kForAll) == kForAll;
}

bool IsPlanted(int folder, const struct stat& status) {
  return status.st_uid != 0 && status.st_uid != geteuid() && IsForAll(folder);
}
