#include "inventory/runs/recording_writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "inventory/base/program.h"
#include "inventory/base/readable.h"
#include "inventory/base/times.h"
#include "inventory/runs/path_walk.h"
#include "inventory/runs/recording_index.h"
#include "standin/descriptor.h"

namespace {

namespace fs = std::filesystem;
using standin::Descriptor;
using Json = nlohmann::ordered_json;

/// A longer text of a run that failed has a file of its own.
constexpr std::size_t kLongestInline = 4096;

[[noreturn]] void Fail(const std::string& what) {
  throw std::runtime_error(what + ": " + std::strerror(errno));
}

/// Fit to be a part of a file's name: no path is made of what somebody else wrote.
bool IsPlainWord(std::string_view word) {
  constexpr std::size_t kLongest = 64;
  for (const char c : word) {
    if (std::isalnum(static_cast<unsigned char>(c)) == 0 && c != '_') return false;
  }
  return !word.empty() && word.size() <= kLongest;
}

/// "kraid/kelvcmd.d/1/getconfig-al"; "runs/0007" where the arguments are not the usual three.
std::string StemOf(const RunRecord& run, std::size_t index) {
  const std::string tool = run.Tool();
  bool is_usual = run.arguments.size() == 3 && IsPlainWord(tool);
  for (const std::string& argument : run.arguments) is_usual = is_usual && IsPlainWord(argument);
  if (is_usual) {
    return "kraid/" + tool + ".d/" + run.arguments[1] + "/" + run.arguments[0] + "-" +
           run.arguments[2];
  }
  char name[32];
  std::snprintf(name, sizeof name, "runs/%04zu", index + 1);
  return name;
}

class FolderWriter {
 public:
  explicit FolderWriter(fs::path folder) : folder_(std::move(folder)) {}

  void Write(const Recording& recording) {
    Json index = {{"recording_version", {kRecordingMajor, kRecordingMinor}},
                  {"generator", {{"name", kProgramName}, {"version", kProgramVersion}}},
                  {"host", recording.host},
                  {"root", recording.root},
                  {"as_host", recording.as_host},
                  {"passes", recording.passes},
                  {"collected_at", PreciseTime(recording.collected_at)},
                  {"duration_ms", recording.duration.count()},
                  {"clock", Json::array()},
                  {"files", Json::array()},
                  {"runs", Json::array()}};
    for (const auto& time : recording.clock) index["clock"].push_back(PreciseTime(time));
    for (const RecordedFile& file : recording.files) index["files"].push_back(Describe(file));
    for (std::size_t i = 0; i < recording.runs.size(); ++i) {
      index["runs"].push_back(Describe(recording.runs[i], i));
    }
    const std::string text = index.dump(1, ' ', false, Json::error_handler_t::replace) + "\n";
    if (recording.runs.size() > kMostRecordedRuns || text.size() > kLargestIndex) {
      throw std::runtime_error("there are more runs than a recording may hold");
    }
    Store(kRecordingIndex, text);
  }

 private:
  Json Describe(const RecordedFile& file) {
    Json entry = {{"path", file.path}, {"file", nullptr}};
    if (file.text) {
      const fs::path path = file.path;
      const std::string stem = path.stem().string();
      const std::string extension = path.extension().string();
      const bool is_plain = IsPlainWord(stem) && !extension.empty() &&
                            IsPlainWord(std::string_view(extension).substr(1));
      entry["file"] = Keep(is_plain ? "KelvMgr/" + stem : "KelvMgr/file",
                           is_plain ? extension : ".txt", *file.text);
      if (file.file_bytes > 0) entry["file_bytes"] = file.file_bytes;
    }
    return entry;
  }

  Json Describe(const RunRecord& run, std::size_t index) {
    Json entry = {{"program", run.program},
                  {"arguments", run.arguments},
                  {"started_at", PreciseTime(run.started)},
                  {"duration_ms", run.duration.count()},
                  {"end", NameOf(run.end)}};
    if (run.end == RunEnd::kExited) entry["exit_status"] = run.exit_status;
    if (run.end == RunEnd::kSignalled) entry["signal"] = run.signal;
    if (!run.reason.empty()) entry["reason"] = run.reason;
    if (!run.left_behind.empty()) entry["left_behind"] = run.left_behind;
    if (run.is_tool_absent) entry["tool_absent"] = true;
    const std::string stem = StemOf(run, index);
    AddText("output", stem, ".txt", *run.whole_output, run.exit_status != 0, entry);
    AddText("error_output", stem, ".err", *run.whole_error_output, run.exit_status != 0, entry);
    if (run.output_bytes != run.whole_output->size()) entry["output_bytes"] = run.output_bytes;
    if (run.error_bytes != run.whole_error_output->size()) entry["error_bytes"] = run.error_bytes;
    return entry;
  }

  /// What tools say of absent controllers stands in the index, so that it does not fill the folder.
  void AddText(const std::string& member, const std::string& stem, const char* extension,
               const std::string& text, bool may_be_inline, Json& entry) {
    if (text.empty()) return;
    if (may_be_inline && text.size() <= kLongestInline && ValidUtf8(text) == text) {
      entry[member + "_text"] = text;
    } else {
      entry[member] = Keep(stem, extension, text);
    }
  }

  /// Stores a text under this name or, where another one has it, the next free one.
  std::string Keep(const std::string& stem, const std::string& extension, const std::string& text) {
    std::string name = stem + extension;
    bytes_ += text.size();  // as they are read: once for each run
    if (text.size() > kLargestRecordedFile || bytes_ > kLargestRecording - kLargestIndex) {
      throw std::runtime_error(name + ": is more than a recording may hold");
    }
    for (int i = 2;; ++i) {
      const auto [known, is_new] = kept_.emplace(name, &text);
      if (is_new) Store(name, text);
      if (is_new || *known->second == text) return name;
      name = stem;
      name.append("-").append(std::to_string(i)).append(extension);
    }
  }

  void Store(const std::string& name, std::string_view text) {
    const fs::path path = folder_ / name;
    fs::create_directories(path.parent_path());
    Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file.IsOpen()) Fail(path.string());
    while (!text.empty()) {
      const ssize_t written = write(file.Get(), text.data(), text.size());
      if (written < 0 && errno != EINTR) Fail(path.string());
      if (written > 0) text.remove_prefix(static_cast<std::size_t>(written));
    }
    if (close(file.Release()) != 0) Fail(path.string());
  }

  fs::path folder_;
  std::map<std::string, const std::string*> kept_;
  std::size_t bytes_ = 0;
};

/// Holds all signals back for as long as it lives.
class SignalsHeld {
 public:
  SignalsHeld() {
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, &before_);
  }
  ~SignalsHeld() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  SignalsHeld(const SignalsHeld&) = delete;
  SignalsHeld& operator=(const SignalsHeld&) = delete;

 private:
  sigset_t before_{};
};

/// Where the folder itself stands: behind links, without a slash at its end.
fs::path PlaceOf(const fs::path& folder) {
  const fs::path place = fs::weakly_canonical(folder);
  return place.has_filename() ? place : place.parent_path();
}

/// Throws when somebody else has put something in the place, whose rights it must not get.
void RefusePlanted(const fs::path& place) {
  const Descriptor above(open(place.parent_path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  struct stat status {};
  if (lstat(place.c_str(), &status) == 0 && IsPlanted(above.Get(), status)) {
    throw std::runtime_error("somebody else has put something there meanwhile");
  }
}

/// Gives the new folder the permissions and group of the one that it replaces, or those of any.
void Permit(const fs::path& unfinished, const fs::path& place) {
  struct stat status {};
  mode_t mode = 0;
  if (lstat(place.c_str(), &status) == 0 && S_ISDIR(status.st_mode)) {
    mode = status.st_mode & 0777;
    // Whoever may not give it to the group keeps it for his own.
    if (chown(unfinished.c_str(), static_cast<uid_t>(-1), status.st_gid) != 0) mode &= 0707;
  } else {
    const mode_t mask = umask(0);
    umask(mask);
    mode = 0777 & ~mask;
  }
  if (chmod(unfinished.c_str(), mode) != 0) Fail(unfinished.string());
}

dev_t DeviceOf(const fs::path& path) {
  struct stat status {};
  stat(path.c_str(), &status);
  return status.st_dev;
}

/// Whether a recording may hold a file of this path: what else is there is somebody's.
bool IsOfRecording(const fs::path& path) {
  if (path == kRecordingIndex) return true;
  auto part = path.begin();
  const std::string top = part->string();
  ++part;
  if (top == "kraid") return part != path.end() && part->extension() == ".d";
  return top == "KelvMgr" || top == "runs";
}

/// The first file in the folder that is of no recording; "" when there is none.
std::string FindForeign(const fs::path& folder) {
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    const fs::path path = fs::relative(entry.path(), folder);
    if (!entry.is_directory() && !IsOfRecording(path)) return path.string();
  }
  return "";
}

/// Puts the new folder in place; what stood there before is then at the new one's first place.
void Switch(const fs::path& unfinished, const fs::path& place) {
  // Nothing may have come there meanwhile, but where the file system cannot tell.
  if (renameat2(AT_FDCWD, unfinished.c_str(), AT_FDCWD, place.c_str(), RENAME_NOREPLACE) == 0)
    return;
  if (errno != EEXIST && !fs::exists(place)) return fs::rename(unfinished, place);
  if (renameat2(AT_FDCWD, unfinished.c_str(), AT_FDCWD, place.c_str(), RENAME_EXCHANGE) == 0)
    return;
  if (errno != EINVAL && errno != ENOSYS) Fail(place.string());
  // A file system that knows no exchange: there is a moment without a recording.
  const fs::path aside = unfinished.string() + ".old";
  fs::rename(place, aside);
  fs::rename(unfinished, place);
  fs::rename(aside, unfinished);
}

/// All of it is on the disk.
void Flush(const fs::path& folder) {
  const Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!opened.IsOpen() || syncfs(opened.Get()) != 0) Fail(folder.string());
}

}  // namespace

std::string WhyNoRecordingFits(const fs::path& folder) {
  try {
    const fs::file_status status = fs::status(folder);
    const fs::path place = PlaceOf(folder);
    const fs::path parent = place.parent_path();
    if (!fs::exists(status) && fs::is_symlink(fs::symlink_status(folder))) {
      return "it is a link to nothing";
    }
    if (fs::exists(status)) {
      if (!fs::is_directory(status)) return "it is no folder";
      if (DeviceOf(place) != DeviceOf(parent)) return "another file system begins there";
      if (!fs::is_regular_file(place / kRecordingIndex) && !fs::is_empty(place)) {
        return "there is something else than a recording in it";
      }
      const std::string foreign = FindForeign(place);
      if (!foreign.empty()) return "it holds " + foreign + ", which is of no recording";
    }
    const bool is_writable = access(parent.c_str(), W_OK | X_OK) == 0;
    return is_writable ? "" : parent.string() + ": " + std::strerror(errno);
  } catch (const fs::filesystem_error& error) {
    return error.code().message();
  }
}

std::string WriteRecording(const Recording& recording, const fs::path& place) {
  const SignalsHeld held;
  std::string unfinished;
  std::string error;
  try {
    if (recording.runs.empty()) throw std::runtime_error("nothing was collected");
    unfinished = (place.parent_path() / ("." + place.filename().string() + ".XXXXXX")).string();
    if (mkdtemp(unfinished.data()) == nullptr) {
      unfinished.clear();
      Fail(place.string());
    }
    FolderWriter(unfinished).Write(recording);
    RefusePlanted(place);
    Permit(unfinished, place);
    Flush(unfinished);
    if (const std::string why = WhyNoRecordingFits(place); !why.empty()) {
      throw std::runtime_error(why);
    }
    Switch(unfinished, place);
  } catch (const std::exception& failure) {
    error = failure.what();
  }
  // Not written, or the one from before.
  std::error_code left;
  if (!unfinished.empty()) fs::remove_all(unfinished, left);
  if (left && error.empty()) {
    error = "it was written, but the one before cannot be removed: " + unfinished + ": ";
    error += left.message();
  }
  return error;
}
