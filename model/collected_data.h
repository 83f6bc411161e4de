#ifndef MODEL_COLLECTED_DATA_H_
#define MODEL_COLLECTED_DATA_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "hmz/plugin_management.h"

/// The output of one tool run, cut into lines, and a cursor over them. All parsers read through it.
///
/// Every line keeps its "\n"; text behind the last "\n" is dropped. Reading a line outside the
/// output throws std::out_of_range("vector"): parsers and collectors let it pass.
class CollectedData {
 public:
  CollectedData(NKVXHMZ20::TPluginManagerProvider* provider, std::string text);
  virtual ~CollectedData() = default;

  /// The first line of the whole output, wherever the cursor stands, that contains the label; the
  /// cursor moves to it. "" when there is none; the cursor stays.
  std::string FindLine(std::string_view label);
  /// As FindLine, but the value of the line found.
  std::string FindParseLine(std::string_view label);

  /// Steps to the next line and returns it. The step is kept when there is no such line.
  std::string GetNextLine();
  std::string GetCurrentLine() const;

  /// What follows the first ":" of a line, up to and with its "\n"; "" without a colon.
  static std::string ParseLine(std::string_view line);
  /// The value of the current line.
  std::string ParseLine() const;

  /// Steps to the next line and returns its value when the line contains the label, "" otherwise:
  /// the line is consumed either way.
  std::string GetProperty(std::string_view label);
  std::string GetProperty();

  /// Steps back one line, unchecked: for a line that was read but belongs to the next record.
  void decrementLinePtr();

  /// Both read the text up to its first NUL and take blank, tab and "\n" for white space.
  /// The leading one never removes the last character: three blanks give one blank.
  static std::string krRemoveLeadingWhiteSpace(std::string_view text);
  static std::string krRemoveTrailingWhiteSpace(std::string_view text);

  /// Writes all lines to standard output.
  void DisplayAll() const;

 private:
  std::string_view CurrentLine() const;
  std::string_view NextLine();
  /// The first line with the label, with the cursor on it; "" when there is none.
  std::string_view Find(std::string_view label);

  std::string text_;  // whole lines only
  // Where the current line begins; the text's size behind the last line, 0 before the first.
  std::size_t begin_ = 0;
  // The cursor is not clamped: by how many lines it stands before the first one (less than 0), or
  // further than right behind the last one.
  std::int64_t outside_ = 0;
};

#endif  // MODEL_COLLECTED_DATA_H_
