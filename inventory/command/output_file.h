#ifndef INVENTORY_COMMAND_OUTPUT_FILE_H_
#define INVENTORY_COMMAND_OUTPUT_FILE_H_

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

#include "inventory/base/sink.h"
#include "inventory/command/ending_signals.h"

/// Where the document goes: standard output, or a file that gets its new content whole or not at
/// all: an unfinished one goes with the object. Something at the path that is no regular file (a
/// device, a pipe) is written to directly.
class OutputFile final : public Sink {
 public:
  /// No path: standard output.
  explicit OutputFile(const std::filesystem::path& path);
  ~OutputFile() override;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void Write(std::string_view text) override;
  /// The last call: all is written, and the file takes its place.
  void Finish();

  /// "" as long as all went well; else the system's reason.
  const std::string& GetError() const { return error_; }
  /// True when the reader of a pipe went away, which needs no message.
  bool IsBrokenPipe() const { return broken_pipe_; }

 private:
  void OpenTemporary();
  void Fail();

  std::filesystem::path target_;
  UnfinishedFile unfinished_;
  std::FILE* file_ = nullptr;
  std::string error_;
  bool broken_pipe_ = false;
};

#endif  // INVENTORY_COMMAND_OUTPUT_FILE_H_
