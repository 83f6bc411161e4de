#ifndef INVENTORY_COMMAND_TERMINAL_H_
#define INVENTORY_COMMAND_TERMINAL_H_

#include <string>

/// Writes one line to standard error, behind this program's name; Sanitized.
void Complain(const std::string& text);

/// Says on standard error why nothing can be answered; a check has its line on standard output all
/// the same. Returns how to end: with `exit_status`, or as an unknown check.
int Refuse(const std::string& why, bool is_check, int exit_status);

/// What a person sees on standard error while the tools run: one line that is written over and over
/// on a terminal, nothing elsewhere.
class ProgressLine {
 public:
  ProgressLine();
  ~ProgressLine();
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  void Show(const std::string& text);
  /// Takes the line away, before something else is written.
  void Clear();

 private:
  bool on_terminal_;
  bool shown_ = false;
};

#endif  // INVENTORY_COMMAND_TERMINAL_H_
