#ifndef INVENTORY_COMMAND_PROGRESS_LINE_H_
#define INVENTORY_COMMAND_PROGRESS_LINE_H_

#include <cstddef>
#include <string>

/// The text as it can be shown: Sanitized, on one line of at most so many columns.
std::string FittingLine(const std::string& text, std::size_t columns);

/// What a person sees on standard error while the tools run: one line that is written over and over
/// on a terminal, nothing elsewhere.
class ProgressLine {
 public:
  ProgressLine();
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  /// Shows as much of the text as fits.
  void Show(const std::string& text);
  /// Takes the line away, before something else is written.
  void Clear();

 private:
  bool on_terminal_;
  bool shown_ = false;
};

#endif  // INVENTORY_COMMAND_PROGRESS_LINE_H_
