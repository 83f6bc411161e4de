#include "inventory/runs/trust.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <tuple>
#include <utility>

#include "inventory/runs/path_walk.h"

namespace fs = std::filesystem;
using standin::Descriptor;

namespace {

constexpr int kMostInterpreters = 4;
constexpr mode_t kWritableByOthers = S_IWGRP | S_IWOTH;

std::string Quoted(const std::string& path) {
  std::string quoted = "'";
  for (const char c : path) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

/// What is wrong with a file or folder, and the command that mends it; "" when nothing is.
std::string Describe(const struct stat& status, const fs::path& place) {
  const bool is_writable = (status.st_mode & kWritableByOthers) != 0;
  if (status.st_uid == 0 && !is_writable) return "";
  const std::string name = place.string();
  // In a user namespace the root may be nobody's that it knows.
  if (name == "/" && status.st_uid != 0) return "/ does not belong to the root of this namespace";
  std::string why;
  std::string command;
  if (status.st_uid != 0) {
    why = " belongs to user " + std::to_string(status.st_uid);
    command = "chown root:root " + Quoted(name);
  }
  if (is_writable) {
    why += (why.empty() ? "" : " and") + std::string(" can be written to by others");
    command += (command.empty() ? "" : " && ") + std::string("chmod go-w ") + Quoted(name);
  }
  return name + why + "; mend it with: " + command;
}

bool IsShared(const struct stat& status) {
  return S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0 &&
         (status.st_mode & kWritableByOthers) != 0;
}

/// Whether owners and rights there are what some program of a user says.
bool IsUsersOwn(int file) {
  struct statfs system {};
  return fstatfs(file, &system) != 0 || system.f_type == FUSE_SUPER_MAGIC;
}

/// Opens the file for reading; nothing, with errno set, when nothing can be opened there. `why_not`
/// says what is wrong with the first on the way that is to blame.
Descriptor OpenJudged(const fs::path& program, std::string& why_not) {
  PathWalk walk(program.native());
  fs::path place;
  std::string for_all;  // the folder that was gone to last, if it is one
  while (walk.IsAhead()) {
    const bool is_there = walk.Step();
    if (!for_all.empty() && why_not.empty()) {
      why_not = for_all + " is a folder for all; mend it with: mv " +
                Quoted((fs::path(for_all) / walk.GetName()).string()) + " /opt/";
    }
    if (!is_there) return {};
    if (walk.IsAtLink()) {
      if (!walk.Follow()) return {};
      continue;
    }
    if (walk.GetName() == "..") {
      place = place.parent_path();
    } else if (walk.GetName() != ".") {
      place /= walk.GetName();
    }
    if (!why_not.empty()) continue;
    if (IsShared(walk.GetStatus())) {
      for_all = place.string();
    } else if (IsUsersOwn(walk.GetReached().Get())) {
      why_not = place.string() + " is on a file system that a user can make up";
    } else {
      why_not = Describe(walk.GetStatus(), place);
    }
  }
  if (S_ISDIR(walk.GetStatus().st_mode)) {
    errno = EISDIR;
    return {};
  }
  // Nobody but root could swap it in between, where all above it was found in order.
  return Descriptor(openat(walk.GetFolder().Get(), walk.GetName().c_str(),
                           O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
}

/// The path behind "#!"; "" of what is no script.
std::string InterpreterOf(int descriptor) {
  char begin[256];
  const ssize_t size = pread(descriptor, begin, sizeof begin, 0);
  std::string line(begin, size > 0 ? static_cast<std::size_t>(size) : 0);
  if (!line.starts_with("#!")) return "";
  line.erase(0, 2);
  line.resize(std::min(line.find('\n'), line.size()));
  const auto start = line.find_first_not_of(" \t");
  return start == std::string::npos ? ""
                                    : line.substr(start, line.find_first_of(" \t", start) - start);
}

/// Returns the file and why it cannot be trusted.
std::pair<Descriptor, std::string> Look(const fs::path& path, int interpreters_left,
                                        bool& is_absent) {
  fs::path here;
  if (path.is_relative()) {
    std::error_code error;
    here = fs::current_path(error);
    struct stat working {};
    struct stat named {};
    const bool is_known = stat(".", &working) == 0;
    is_absent = is_known && working.st_nlink == 0;  // it is gone, and nothing can be in it
    if (is_absent) return {};
    if (error || !is_known || stat(here.c_str(), &named) != 0 || working.st_dev != named.st_dev ||
        working.st_ino != named.st_ino) {
      return {Descriptor(), "the working folder has no path"};
    }
  }
  std::string why;
  Descriptor file = OpenJudged(here / path, why);
  if (!file.IsOpen()) {
    is_absent = errno == ENOENT || errno == ENOTDIR || errno == ELOOP;
    // What cannot be looked at is not trusted. Nor is a place where something may appear.
    if (!is_absent && why.empty()) why = path.string() + " cannot be opened: " + strerror(errno);
    return {Descriptor(), why};
  }
  if (!why.empty()) return {Descriptor(), why};
  const std::string interpreter = InterpreterOf(file.Get());
  if (interpreter.empty()) return {std::move(file), ""};
  if (interpreters_left == 0) return {};  // too many for the kernel as well
  bool ignored = false;
  why = Look(interpreter, interpreters_left - 1, ignored).second;
  return {Descriptor(), why.empty() ? "" : "its interpreter: " + why};
}

}  // namespace

TrustedFile::TrustedFile(const fs::path& path) {
  std::tie(opened_, why_not_) = Look(path, kMostInterpreters, is_absent_);
}
