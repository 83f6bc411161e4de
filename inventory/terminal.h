#ifndef INVENTORY_TERMINAL_H_
#define INVENTORY_TERMINAL_H_

#include <string>

/// Writes one line to standard error, behind this program's name; see Printable.
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

/// Text from elsewhere, fit for a terminal: control characters other than tab as "?". Newlines
/// stay where the text is to keep its lines.
enum class Newlines { kKeep, kReplace };
std::string Printable(std::string text, Newlines newlines);

#endif  // INVENTORY_TERMINAL_H_
