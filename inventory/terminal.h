#ifndef INVENTORY_TERMINAL_H_
#define INVENTORY_TERMINAL_H_

#include <string>

/// Writes one line of this program's to standard error, behind its name.
void Complain(const std::string& text);

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

/// Text from a tool, fit for a terminal: control characters other than tab and newline as "?".
std::string Printable(std::string text);

#endif  // INVENTORY_TERMINAL_H_
