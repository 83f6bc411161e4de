#ifndef INVENTORY_BASE_READABLE_H_
#define INVENTORY_BASE_READABLE_H_

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// How much of a text to take at once: all of a short one, else about 64 KiB. No character goes
/// beyond it, and bytes that are none are the same ones as in the whole.
std::size_t PieceLength(std::string_view text);

/// Calls `take` with one piece after the other, so that what is made of a large text is never in
/// memory as a whole.
template <class Take>
void ForEachPiece(std::string_view text, const Take& take) {
  while (!text.empty()) {
    const std::size_t length = PieceLength(text);
    take(text.substr(0, length));
    text.remove_prefix(length);
  }
}

/// Text from elsewhere as valid UTF-8: bytes that are none become U+FFFD, as in the JSON document.
std::string ValidUtf8(std::string text);

/// A character that is not seen and changes how what is around it is: DEL, a control of the second
/// set (U+0080 to U+009F), a bidirectional control, a separator of lines or paragraphs.
struct Hidden {
  unsigned code;
  std::size_t size;  ///< In bytes of UTF-8.
};

/// The one that begins at `at` in valid UTF-8, if there is one.
std::optional<Hidden> FindHidden(std::string_view text, std::size_t at);

/// Valid UTF-8 with a name in the place of each hidden character.
std::string NameHidden(std::string text, std::string (*name)(unsigned code));

/// What becomes of the white space of a text that is made fit for a terminal.
enum class Layout {
  kLines,    ///< Tabs and line ends stay.
  kOneLine,  ///< Tabs stay, line ends are control characters.
  kBlanks,   ///< Tabs, line ends and form feeds become blanks.
};

/// Text from elsewhere, fit for a terminal: valid UTF-8, "?" for each control character of ASCII,
/// and
/// "<U+202E>" for each hidden one. All that reaches a terminal passes here.
std::string Sanitized(std::string text, Layout layout);

/// Text from elsewhere, fit to be read: Sanitized, trimmed, each run of blanks and line ends as one
/// blank.
std::string Readable(std::string text);

/// As Readable, for a line whose columns matter: blanks stay, but for those at the end.
std::string ReadableLine(std::string text);

/// "1 device", "2 devices"
std::string Counted(std::size_t count, const std::string& noun);

/// With the ASCII letters in lower case.
std::string Lower(std::string_view text);

/// How many columns a text of Readable takes.
std::size_t WidthOf(std::string_view text);

#endif  // INVENTORY_BASE_READABLE_H_
