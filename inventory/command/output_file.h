#ifndef INVENTORY_COMMAND_OUTPUT_FILE_H_
#define INVENTORY_COMMAND_OUTPUT_FILE_H_

#include <cstdio>
#include <string>
#include <string_view>

#include "inventory/base/sink.h"
#include "inventory/command/ending_signals.h"
#include "inventory/command/file_place.h"

/// Where the document goes: standard output, or a file that gets its new content whole or not at
/// all: an unfinished one goes with the object. It keeps owner and permissions of the one before,
/// without set-id bits. What is no regular file (a device, a pipe) and descriptors of this program
/// are written to directly.
class OutputFile final : public Sink {
 public:
  /// No place: standard output. What would keep the file from its place later is an error now.
  explicit OutputFile(FilePlace place);
  ~OutputFile() override;
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  void Write(std::string_view text) override;
  /// What the file holds when it cannot be finished, be it that a signal ends this program, instead
  /// of what was in it before. Nothing where it is not replaced.
  void SetLastWords(std::string_view text);
  /// Takes back what was written. Returns false where that cannot be.
  bool Restart();
  /// The last call: all is written, and the file takes its place.
  void Finish();

  /// "" as long as all went well; else the system's reason.
  const std::string& GetError() const { return error_; }
  /// True when the reader of a pipe went away, which needs no message.
  bool IsBrokenPipe() const { return broken_pipe_; }

 private:
  void Fail();

  FilePlace place_;  // its folder outlives the unfinished files
  bool is_replaced_ = false;
  bool is_begun_ = false;
  UnfinishedFile unfinished_;
  UnfinishedFile last_words_;
  std::FILE* file_ = nullptr;
  std::string error_;
  bool broken_pipe_ = false;
};

#endif  // INVENTORY_COMMAND_OUTPUT_FILE_H_
