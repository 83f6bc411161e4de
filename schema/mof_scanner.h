#ifndef SCHEMA_MOF_SCANNER_H_
#define SCHEMA_MOF_SCANNER_H_

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// A MOF text and the place in it. Tokens are taken one by one; blanks and comments before one are
/// skipped. Whatever does not fit throws std::runtime_error, "NAME:LINE: what was expected".
class MofScanner {
 public:
  /// The text has to be UTF-8 throughout, comments too, and to outlive the scanner.
  MofScanner(std::string name, std::string_view text);

  /// Throws, with the line of the place, unless `holds`.
  void Check(bool holds, std::string_view why) const;

  std::size_t GetLine() const { return line_; }

  /// Whether nothing but blanks and comments is left.
  bool IsAtEnd();

  /// Steps over `token` if it comes next. A word does not accept the beginning of a longer one.
  bool Accept(std::string_view token);
  void Expect(std::string_view token);

  /// A letter or underscore, then further ones and digits.
  std::string TakeName();

  /// With its "$".
  std::string TakeAlias();

  /// A string's content, its escapes resolved.
  std::string TakeString();

  /// A string with a time that there may be, from year 1 on. Asterisks may stand for all from a
  /// field behind the year on, up to the offset in minutes, which has to be there.
  void TakeDateTime();

  /// A decimal number without sign, from 0 to `largest`.
  void TakeNumber(std::uint32_t largest);

 private:
  std::string_view Rest() const { return text_.substr(at_); }
  bool IsNext(std::string_view characters, std::size_t ahead = 0) const;
  std::string_view Take(std::size_t count);
  std::string_view TakeAll(std::string_view characters);
  void SkipBlanks();
  void TakeEscape(std::string& text);

  std::string name_;
  std::string_view text_;
  std::size_t at_ = 0;
  std::size_t line_ = 1;
};

#endif  // SCHEMA_MOF_SCANNER_H_
