#include "inventory/print/html/html_writer.h"

#include <algorithm>

namespace {

constexpr std::size_t kBufferSize = std::size_t{32} << 10;

/// What becomes of a byte at most: of the two of U+0085 "&lt;U+0085&gt;".
constexpr std::size_t kLongestEscape = 7;

/// What stands for a character that has a meaning in markup; "" for all others. Attributes stand in
/// double quotes, so a single one has none.
constexpr std::string_view Escaped(char c) {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    default:
      return "";
  }
}

bool IsPlain(char c) { return c >= ' ' && c <= '~' && Escaped(c).empty(); }

/// As the tools write them on any system.
std::string_view WithoutReturn(std::string_view line) {
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

void HtmlWriter::Fill(std::string_view markup, std::initializer_list<HtmlValue> values) {
  for (const HtmlValue& value : values) {
    const std::size_t hole = markup.find("{}");
    Put(markup.substr(0, hole));
    Escape(value.Get(), Layout::kOneLine);
    markup.remove_prefix(hole + 2);
  }
  Put(markup);
}

void HtmlWriter::Lines(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    ForEachPiece(WithoutReturn(text.substr(0, end)),
                 [this](std::string_view piece) { Escape(piece, Layout::kOneLine); });
    if (end < text.size()) Put("\n");
    text.remove_prefix(std::min(end + 1, text.size()));
  }
}

void HtmlWriter::Escape(std::string_view text, Layout layout) {
  if (std::all_of(text.begin(), text.end(), IsPlain)) return Put(text);
  const std::string readable = Sanitized(std::string(text), layout);
  std::string_view rest = readable;
  while (!rest.empty()) {
    const std::size_t plain = static_cast<std::size_t>(
        std::find_if(rest.begin(), rest.end(), [](char c) { return !Escaped(c).empty(); }) -
        rest.begin());
    Put(rest.substr(0, plain));
    if (plain < rest.size()) Put(Escaped(rest[plain]));
    rest.remove_prefix(std::min(plain + 1, rest.size()));
  }
}

void HtmlWriter::Put(std::string_view markup) {
  size_ += markup.size();
  buffer_ += markup;
  if (buffer_.size() >= kBufferSize) Flush();
}

void HtmlWriter::Flush() {
  output_.Write(buffer_);
  buffer_.clear();
}

std::size_t FittingLength(std::string_view text, std::size_t most) {
  SizeSink sink;
  HtmlWriter writer(sink);
  std::size_t length = 0;
  while (length < text.size()) {
    const std::size_t end = std::min(text.find('\n', length), text.size() - 1) + 1;
    // A line of which not even the plain characters fit is not looked at.
    if (writer.GetSize() + (end - length) / 8 > most) break;
    writer.Lines(text.substr(length, end - length));
    if (writer.GetSize() > most) break;
    length = end;
  }
  if (length > 0 || text.size() < most / kLongestEscape) return length;
  // Of a first line that is too long as much as fits however it is written.
  length = most / kLongestEscape;
  for (int i = 0; i < 3 && length > 0 && (text[length] & '\xC0') == '\x80'; ++i) --length;
  return length;
}
