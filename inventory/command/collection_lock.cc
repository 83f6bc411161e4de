#include "inventory/command/collection_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <thread>

#include "standin/awake_clock.h"

namespace fs = std::filesystem;
using standin::Descriptor;
using std::chrono::milliseconds;

namespace {

constexpr milliseconds kRetry{50};

/// A name that differs for each root, however it is written (FNV-1a).
std::string FileName(const fs::path& root) {
  std::error_code ignored;
  std::uint64_t hash = 14695981039346656037U;
  for (const char c : fs::canonical(root, ignored).string()) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
  }
  char name[64];
  std::snprintf(name, sizeof name, "kraid-inventory-%016llx.lock",
                static_cast<unsigned long long>(hash));
  return name;
}

/// Opens the file, or makes it; none with errno set. An existing one is never asked to be made: the
/// kernel refuses that for somebody else's file in a folder for all.
Descriptor OpenFile(const fs::path& file) {
  constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NOCTTY | O_NONBLOCK | O_CLOEXEC;
  for (int tries = 0; tries < 2; ++tries) {
    Descriptor found(open(file.c_str(), kFlags));
    if (found.IsOpen() || errno != ENOENT) return found;
    Descriptor made(open(file.c_str(), kFlags | O_CREAT | O_EXCL, 0644));
    if (made.IsOpen()) fchmod(made.Get(), 0644);  // others have to open it, whatever the umask
    if (made.IsOpen() || errno != EEXIST) return made;
  }
  return {};
}

/// Who holds a lock on the file, as the kernel lists it.
std::string FindHolder(int descriptor) {
  struct stat status {};
  if (fstat(descriptor, &status) != 0) return "another process";
  std::ifstream locks("/proc/locks");
  for (std::string line; std::getline(locks, line);) {
    // "1: FLOCK  ADVISORY  WRITE 1234 00:19:5678 0 EOF"
    std::istringstream words(line);
    std::string number;
    std::string kind;
    std::string mode;
    std::string access;
    std::string pid;
    std::string file;
    words >> number >> kind >> mode >> access >> pid >> file;
    if (kind != "FLOCK" || file.substr(file.rfind(':') + 1) != std::to_string(status.st_ino)) {
      continue;
    }
    std::ifstream comm("/proc/" + pid + "/comm");
    std::string name;
    std::getline(comm, name);
    return "process " + pid + (name.empty() ? "" : " (" + name + ")");
  }
  return "another process";
}

}  // namespace

CollectionLock::~CollectionLock() {
  if (!opened_.IsOpen()) return;
  // Only the holder gets here with its file in place. Whoever waits for it finds it gone then, and
  // opens the next one.
  if (flock(opened_.Get(), LOCK_EX | LOCK_NB) == 0 && IsInPlace()) unlink(file_.c_str());
}

/// Whether the open file is the one that others find under its name.
bool CollectionLock::IsInPlace() const {
  struct stat open_file {};
  struct stat named_file {};
  return fstat(opened_.Get(), &open_file) == 0 && lstat(file_.c_str(), &named_file) == 0 &&
         open_file.st_dev == named_file.st_dev && open_file.st_ino == named_file.st_ino;
}

std::string CollectionLock::Open(const fs::path& root) {
  const char* own = std::getenv("XDG_RUNTIME_DIR");
  for (const char* folder : {"/run/lock", own}) {
    if (folder == nullptr || *folder == '\0') continue;
    file_ = fs::path(folder) / FileName(root);
    opened_ = OpenFile(file_);
    if (opened_.IsOpen()) return "";
  }
  return std::strerror(errno);
}

std::string CollectionLock::Take(const fs::path& root, std::optional<milliseconds>& limit,
                                 const std::function<void(const std::string& holder)>& on_waiting) {
  standin::AwakeClock clock;
  const auto start = clock.Now();
  std::string obstacle = Open(root);
  bool is_waiting = false;
  while (obstacle.empty()) {
    if (flock(opened_.Get(), LOCK_EX | LOCK_NB) == 0) {
      if (IsInPlace()) {
        if (limit) *limit -= std::chrono::duration_cast<milliseconds>(clock.Now() - start);
        return "";
      }
      opened_ = Descriptor();
      obstacle = Open(root);
      continue;
    }
    if (errno != EWOULDBLOCK && errno != EINTR) {
      obstacle = std::strerror(errno);
      break;
    }
    const std::string holder = FindHolder(opened_.Get());
    if (!is_waiting) on_waiting(holder);
    is_waiting = true;
    if (limit && clock.Now() - start >= *limit) {
      opened_ = Descriptor();
      return "another collection here, of " + holder + ", goes on: it was waited for in vain";
    }
    std::this_thread::sleep_for(kRetry);
  }
  return "cannot lock " + file_.string() + ": " + obstacle + "; --no-lock does without";
}
