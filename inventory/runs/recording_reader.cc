#include "inventory/runs/recording_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "inventory/base/json_view.h"
#include "inventory/base/times.h"
#include "inventory/runs/recording_index.h"
#include "standin/descriptor.h"

namespace {

using standin::Descriptor;
using std::chrono::milliseconds;

class FolderReader {
 public:
  explicit FolderReader(const std::filesystem::path& folder)
      : folder_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (!folder_.IsOpen()) throw std::runtime_error(std::strerror(errno));
  }

  /// A file of the folder, by its path there. Links are not followed.
  std::string Read(const std::string& path, std::size_t limit) {
    limit = std::min(limit, kLargestRecording - read_);
    const Descriptor file = Open(path);
    struct stat status {};
    if (fstat(file.Get(), &status) != 0) throw std::runtime_error(path + ": " + strerror(errno));
    if (!S_ISREG(status.st_mode)) throw std::runtime_error(path + ": is no regular file");
    std::string text;
    std::size_t size = 0;
    for (ssize_t count = 1; count != 0;) {
      text.resize(std::min(size + (std::size_t{1} << 16), limit + 1));
      count = read(file.Get(), text.data() + size, text.size() - size);
      if (count < 0 && errno == EINTR) continue;
      if (count < 0) throw std::runtime_error(path + ": " + std::strerror(errno));
      size += static_cast<std::size_t>(count);
      if (size > limit) {
        throw std::runtime_error(path + ": is larger than " + std::to_string(limit) + " bytes");
      }
    }
    text.resize(size);
    read_ += size;
    return text;
  }

 private:
  Descriptor Open(const std::string& path) const {
    Descriptor at(dup(folder_.Get()));
    std::string_view rest = path;
    for (bool is_last = false; !is_last;) {
      const std::size_t slash = rest.find('/');
      is_last = slash == std::string_view::npos;
      const std::string name(rest.substr(0, slash));
      if (!is_last) rest.remove_prefix(slash + 1);
      if (name.empty() || name == "." || name == ".." || name.find('\0') != std::string::npos) {
        throw std::runtime_error("\"" + path + "\" leads out of the folder");
      }
      const int kind = is_last ? O_NONBLOCK | O_NOCTTY : O_DIRECTORY;
      at = Descriptor(openat(at.Get(), name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | kind));
      if (!at.IsOpen()) {
        const bool is_link = errno == ELOOP || (!is_last && errno == ENOTDIR);
        throw std::runtime_error(path + ": " +
                                 (is_link ? "is a link, or below one" : std::strerror(errno)));
      }
    }
    return at;
  }

  Descriptor folder_;
  std::size_t read_ = 0;
};

class IndexReader {
 public:
  IndexReader(const JsonView& index, FolderReader& folder) : index_(index), folder_(folder) {}

  Recording Read() {
    const std::vector<JsonView> version = index_["recording_version"].Items();
    if (version.size() != 2 || version[0].Integer() != kRecordingMajor) {
      index_["recording_version"].Refuse("is one that this program does not read");
    }
    Recording recording;
    recording.host = index_["host"].Text();
    recording.root = index_["root"].Text();
    recording.as_host = index_["as_host"].Bool();
    recording.passes = static_cast<int>(Bounded(index_["passes"], 1, kMostRecordedPasses));
    recording.collected_at = Time(index_["collected_at"]);
    recording.duration = Milliseconds(index_["duration_ms"]);
    for (const JsonView& time : index_["clock"].Items()) recording.clock.push_back(Time(time));
    for (const JsonView& file : index_["files"].Items()) {
      RecordedFile& read = recording.files.emplace_back();
      read.path = file["path"].Text();
      if (file.Has("file")) read.text = File(file["file"]);
      if (file.Has("file_bytes")) {
        read.file_bytes = static_cast<std::uint64_t>(Bounded(file["file_bytes"], 1, INT64_MAX));
        if (!read.text || read.file_bytes <= read.text->size()) {
          file["file_bytes"].Refuse("is not more than what was read");
        }
      }
    }
    const std::vector<JsonView> runs = index_["runs"].Items();
    if (runs.size() > kMostRecordedRuns) index_["runs"].Refuse("are too many");
    recording.runs.reserve(runs.size());
    for (const JsonView& run : runs) recording.runs.push_back(Run(run));
    return recording;
  }

 private:
  RunRecord Run(const JsonView& run) {
    RunRecord record;
    record.program = run["program"].Text();
    for (const JsonView& argument : run["arguments"].Items()) {
      record.arguments.push_back(argument.Text());
    }
    record.started = Time(run["started_at"]);
    record.duration = Milliseconds(run["duration_ms"]);
    const auto end = FindRunEnd(run["end"].Text());
    if (!end) run["end"].Refuse("is no way to end");
    record.end = *end;
    if (record.end == RunEnd::kExited) {
      record.exit_status = static_cast<int>(Bounded(run["exit_status"], 0, 255));
    } else {
      record.reason = run["reason"].Text();
      if (record.reason.empty()) run["reason"].Refuse("is empty");
    }
    if (record.end == RunEnd::kSignalled) {
      record.signal = static_cast<int>(Bounded(run["signal"], 1, 64));
    }
    if (run.Has("left_behind")) {
      for (const JsonView& name : run["left_behind"].Items()) {
        record.left_behind.push_back(name.Text());
      }
    }
    record.is_tool_absent = run.Has("tool_absent") && run["tool_absent"].Bool();
    record.whole_output = std::make_shared<const std::string>(TextOf(run, "output"));
    record.whole_error_output = std::make_shared<const std::string>(TextOf(run, "error_output"));
    record.output_bytes = record.whole_output->size();
    record.error_bytes = record.whole_error_output->size();
    for (const auto& [name, size] : {std::pair{"output_bytes", &record.output_bytes},
                                     std::pair{"error_bytes", &record.error_bytes}}) {
      if (run.Has(name)) *size = static_cast<std::size_t>(Bounded(run[name], 0, INT64_MAX));
    }
    record.SetErrorOutput(*record.whole_error_output);
    if (record.reason.empty()) record.output = record.whole_output;
    return record;
  }

  /// In a file of its own, or in the index; "" where it is in neither.
  std::string TextOf(const JsonView& run, const std::string& member) {
    const std::string in_index = member + "_text";
    if (run.Has(in_index.c_str())) return run[in_index.c_str()].Text();
    return run.Has(member.c_str()) ? File(run[member.c_str()]) : "";
  }

  std::string File(const JsonView& name) {
    try {
      return folder_.Read(name.Text(), kLargestRecordedFile);
    } catch (const std::runtime_error& error) {
      name.Refuse(error.what());
    }
  }

  static std::int64_t Bounded(const JsonView& number, std::int64_t least, std::int64_t most) {
    const std::int64_t value = number.Integer();
    if (value < least || value > most) number.Refuse("is out of its range");
    return value;
  }

  static milliseconds Milliseconds(const JsonView& number) {
    return milliseconds(Bounded(number, 0, 1'000'000'000'000));
  }

  static NKVXHMZ20::TCIMDateTime Time(const JsonView& text) {
    const auto instant = ParseRfc3339(text.Text());
    if (!instant) text.Refuse("is no time");
    return ToDateTime(*instant);
  }

  const JsonView& index_;
  FolderReader& folder_;
};

Recording ReadOnce(const std::filesystem::path& folder) {
  FolderReader reader(folder);
  const std::string text = reader.Read(kRecordingIndex, kLargestIndex);
  try {
    const auto index = ParseJson(text);
    const JsonView view(index);
    return IndexReader(view, reader).Read();
  } catch (const std::runtime_error& error) {
    throw std::runtime_error(std::string(kRecordingIndex) + ": " + error.what());
  } catch (const nlohmann::json::exception& error) {
    throw std::runtime_error(std::string(kRecordingIndex) + ": " + error.what());
  }
}

std::pair<dev_t, ino_t> IdentityOf(const std::filesystem::path& folder) {
  struct stat status {};
  stat(folder.c_str(), &status);
  return {status.st_dev, status.st_ino};
}

}  // namespace

Recording ReadRecording(const std::filesystem::path& folder) {
  for (int tries = 3;; --tries) {
    const auto before = IdentityOf(folder);
    try {
      return ReadOnce(folder);
    } catch (const std::runtime_error& error) {
      // A new one may have taken its place, and the files of the one before be gone.
      if (tries > 1 && IdentityOf(folder) != before) continue;
      throw std::runtime_error(folder.string() + "/" + error.what());
    }
  }
}
