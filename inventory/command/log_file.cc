#include "inventory/command/log_file.h"

#include <cerrno>
#include <cstring>

LogFile::LogFile(const FilePlace& place) : error_(place.error) {
  if (place.IsNone() || !error_.empty()) return;
  standin::Descriptor opened;
  error_ = OpenInPlace(place, opened);
  if (!error_.empty()) return;
  file_.reset(fdopen(opened.Get(), "wb"));
  if (file_ == nullptr) {
    error_ = std::strerror(errno);
  } else {
    opened.Release();
  }
}

void LogFile::Write(int level, const std::string& text) {
  if (file_ == nullptr || !error_.empty()) return;
  std::string line = std::to_string(level) + '\t';
  for (const char c : text) {
    if (c == '\\') {
      line += "\\\\";
    } else if (c == '\n') {
      line += "\\n";
    } else {
      line += c;
    }
  }
  line += '\n';
  const bool is_written = std::fwrite(line.data(), 1, line.size(), file_.get()) == line.size() &&
                          std::fflush(file_.get()) == 0;
  if (!is_written) error_ = std::strerror(errno);
}
