#ifndef INVENTORY_COMMAND_LOG_FILE_H_
#define INVENTORY_COMMAND_LOG_FILE_H_

#include <filesystem>
#include <fstream>
#include <string>

/// The core logger's messages in a file, one line each: the level, a tab and the text, in which a
/// backslash is written `\\` and a newline `\n`. Every line is there as soon as it is logged.
class LogFile {
 public:
  /// No path: everything written is dropped.
  explicit LogFile(const std::filesystem::path& path);

  void Write(int level, const std::string& text);

  /// "" as long as all went well; else the system's reason.
  const std::string& GetError() const { return error_; }

 private:
  void Check();

  std::ofstream file_;
  std::string error_;
};

#endif  // INVENTORY_COMMAND_LOG_FILE_H_
