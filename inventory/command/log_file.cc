#include "inventory/command/log_file.h"

#include <cerrno>
#include <cstring>

LogFile::LogFile(const std::filesystem::path& path) {
  if (path.empty()) return;
  file_.open(path, std::ios::binary);
  Check();
}

void LogFile::Write(int level, const std::string& text) {
  if (!file_.is_open()) return;
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
  file_ << line << std::endl;
  Check();
}

void LogFile::Check() {
  if (!file_ && error_.empty()) error_ = std::strerror(errno);
}
