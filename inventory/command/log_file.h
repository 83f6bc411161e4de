#ifndef INVENTORY_COMMAND_LOG_FILE_H_
#define INVENTORY_COMMAND_LOG_FILE_H_

#include <cstdio>
#include <memory>
#include <string>

#include "inventory/command/file_place.h"

/// The core logger's messages in a file, one line each: the level, a tab and the text, in which a
/// backslash is written `\\` and a newline `\n`. Every line is there as soon as it is logged, for
/// who reads along, and when this program ends before its time: so it is written in place, not
/// beside it and renamed as the output is.
class LogFile {
 public:
  /// No place: everything written is dropped.
  explicit LogFile(const FilePlace& place);

  void Write(int level, const std::string& text);

  /// "" as long as all went well; else the system's reason.
  const std::string& GetError() const { return error_; }

 private:
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_{nullptr, std::fclose};
  std::string error_;
};

#endif  // INVENTORY_COMMAND_LOG_FILE_H_
