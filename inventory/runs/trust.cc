#include "inventory/runs/trust.h"

#include <fcntl.h>
#include <sys/stat.h>
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
std::string Describe(const struct stat& status, const fs::path& place, const fs::path& program) {
  const bool is_writable = (status.st_mode & kWritableByOthers) != 0;
  if (status.st_uid == 0 && !is_writable) return "";
  const std::string name = place.string();
  if (S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0 && is_writable) {
    return name + " is a folder for all; mend it with: mv " +
           Quoted(program.parent_path().lexically_normal().string()) + " /opt/";
  }
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

/// Opens the file for reading; nothing, with errno set, when nothing can be opened there. `why_not`
/// says what is wrong with the first on the way that is to blame.
Descriptor OpenJudged(const fs::path& program, std::string& why_not) {
  PathWalk walk(program.native());
  fs::path place;
  while (walk.IsAhead()) {
    if (!walk.Step()) return {};
    if (walk.IsAtLink()) {
      if (!walk.Follow()) return {};
      continue;
    }
    if (walk.GetName() == "..") {
      place = place.parent_path();
    } else if (walk.GetName() != ".") {
      place /= walk.GetName();
    }
    if (why_not.empty()) why_not = Describe(walk.GetStatus(), place, program);
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
  std::error_code error;
  const fs::path here = path.is_absolute() ? fs::path() : fs::current_path(error);
  if (error) return {};  // In a folder that is gone there is no file.
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
