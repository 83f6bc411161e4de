#include "inventory/runs/trust.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <deque>
#include <utility>

namespace fs = std::filesystem;
using standin::Descriptor;

namespace {

/// As many as the kernel follows.
constexpr int kMostLinks = 40;
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

/// A walk along a path from the root on, one name at a time, as the kernel goes it.
class Walk {
 public:
  explicit Walk(const fs::path& path) : program_(path) {}

  /// Where it ends, for reading; nothing, with errno set, when nothing can be opened there.
  Descriptor Go() {
    Restart();
    for (const fs::path& name : program_) names_.push_back(name.string());
    while (!names_.empty()) {
      const std::string name = std::exchange(names_.front(), {});
      names_.pop_front();
      if (name.empty() || name == "/" || name == ".") continue;
      Descriptor next(openat(at_.Get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
      struct stat status {};
      if (next.Get() < 0 || fstat(next.Get(), &status) != 0) return Descriptor();
      if (S_ISLNK(status.st_mode)) {
        if (!Follow(next.Get())) return Descriptor();
        continue;
      }
      place_ = name == ".." ? place_.parent_path() : place_ / name;
      Judge(status);
      if (!S_ISDIR(status.st_mode) && !names_.empty()) {
        errno = ENOTDIR;
        return Descriptor();
      }
      if (!S_ISDIR(status.st_mode)) {
        // Nobody but root could swap it in between, where all above it was found in order.
        return Descriptor(openat(at_.Get(), name.c_str(),
                                 O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
      }
      at_ = std::move(next);
    }
    errno = EISDIR;
    return Descriptor();
  }

  const std::string& WhyNot() const { return why_not_; }

 private:
  void Restart() {
    place_ = "/";
    at_ = Descriptor(open("/", O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    if (fstat(at_.Get(), &status) == 0) Judge(status);
  }

  bool Follow(int link) {
    char target[PATH_MAX];
    const ssize_t size = readlinkat(link, "", target, sizeof target);
    if (size <= 0 || ++links_ > kMostLinks) {
      errno = ELOOP;
      return false;
    }
    const fs::path path(std::string(target, static_cast<std::size_t>(size)));
    if (path.is_absolute()) Restart();
    std::deque<std::string> names;
    for (const fs::path& name : path) names.push_back(name.string());
    names_.insert(names_.begin(), names.begin(), names.end());
    return true;
  }

  void Judge(const struct stat& status) {
    if (why_not_.empty()) why_not_ = Describe(status, place_, program_);
  }

  const fs::path program_;
  std::deque<std::string> names_;  // still to go
  fs::path place_;
  Descriptor at_;
  int links_ = 0;
  std::string why_not_;
};

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
std::pair<Descriptor, std::string> Look(const fs::path& path, int interpreters_left) {
  std::error_code error;
  const fs::path here = path.is_absolute() ? fs::path() : fs::current_path(error);
  if (error) return {Descriptor(), ""};  // In a folder that is gone there is no file.
  Walk walk(here / path);
  Descriptor file = walk.Go();
  // What is not there is not run either.
  if (!file.IsOpen())
    return {Descriptor(), errno == ENOENT || errno == ENOTDIR ? "" : walk.WhyNot()};
  if (!walk.WhyNot().empty()) return {Descriptor(), walk.WhyNot()};
  const std::string interpreter = InterpreterOf(file.Get());
  if (interpreter.empty()) return {std::move(file), ""};
  if (interpreters_left == 0) return {Descriptor(), ""};  // too many for the kernel as well
  auto [ignored, why] = Look(interpreter, interpreters_left - 1);
  return {Descriptor(), why.empty() ? "" : "its interpreter: " + why};
}

}  // namespace

TrustedFile::TrustedFile(const fs::path& path) {
  auto [file, why] = Look(path, kMostInterpreters);
  why_not_ = std::move(why);
  opened_ = std::move(file);
}
