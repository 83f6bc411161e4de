#ifndef INVENTORY_COMMAND_PROGRESS_LINE_H_
#define INVENTORY_COMMAND_PROGRESS_LINE_H_

#include <string>

/// What a person sees on standard error while the tools run: one line that is written over and over
/// on a terminal, nothing elsewhere.
class ProgressLine {
 public:
  ProgressLine();
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// Shows the text, Sanitized, as far as it fits.
  void Show(const std::string& text);
  /// Takes the line away, before something else is written.
  void Clear();

 private:
  bool on_terminal_;
  bool shown_ = false;
};

#endif  // INVENTORY_COMMAND_PROGRESS_LINE_H_
