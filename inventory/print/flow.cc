#include "inventory/print/flow.h"

#include <algorithm>
#include <numeric>

#include "inventory/base/readable.h"

namespace {

constexpr std::size_t kNarrowestPiece = 10;

/// What turns each Tint on, in their order, and all of them off.
constexpr const char* kTintCodes[] = {"",         "\x1b[1m",  "\x1b[2m",
                                      "\x1b[32m", "\x1b[33m", "\x1b[1;31m"};
constexpr char kPlainCode[] = "\x1b[0m";

std::string Ascii(const std::string& text) {
  std::string ascii;
  for (const char c : text) {
    if ((c & '\x80') == 0) {
      ascii += c;
    } else if ((c & '\xC0') == '\xC0') {
      ascii += '?';  // once for each character, for its first byte
    }
  }
  return ascii;
}

std::size_t WidthOf(const std::vector<Span>& spans) {
  return std::accumulate(
      spans.begin(), spans.end(), std::size_t{0},
      [](std::size_t sum, const Span& span) { return sum + ::WidthOf(span.text); });
}

/// Takes the first `width` columns off `text`.
std::string_view TakeColumns(std::string_view& text, std::size_t width) {
  std::size_t end = 0;
  while (end < text.size()) {
    if ((text[end] & '\xC0') != '\x80' && width-- == 0) break;
    ++end;
  }
  const std::string_view taken = text.substr(0, end);
  text.remove_prefix(end);
  return taken;
}

}  // namespace

void TextWriter::Line(const std::vector<Span>& spans) {
  std::string line;
  for (const Span& span : spans) {
    const std::string text = display_.utf8 ? span.text : Ascii(span.text);
    const bool is_tinted = display_.color && span.tint != Tint::kPlain && !text.empty();
    if (is_tinted) line += kTintCodes[static_cast<std::size_t>(span.tint)];
    line += text;
    if (is_tinted) line += kPlainCode;
  }
  line.erase(line.find_last_not_of(' ') + 1);
  output_.Write(line + "\n");
}

void TextWriter::Flow(const std::vector<Span>& start, const std::string& indent,
                      const std::vector<Span>& pieces, std::string_view gap) {
  const std::size_t indent_width = ::WidthOf(indent);
  const std::size_t room = display_.width - std::min(display_.width, indent_width);
  std::vector<Span> line = start;
  std::size_t width = WidthOf(start);
  bool is_begun = false;  // a piece is on the line
  const auto end_line = [&] {
    Line(line);
    line = {{indent}};
    width = indent_width;
    is_begun = false;
  };
  for (const Span& piece : pieces) {
    std::string_view text = piece.text;
    std::size_t text_width = ::WidthOf(text);
    const auto is_too_wide = [&] {
      const std::size_t needed = text_width + (is_begun ? gap.size() : 0);
      return width >= display_.width || needed > display_.width - width;
    };
    // On a line of its own, if that helps; else it is broken.
    if (is_too_wide() && (is_begun || (text_width <= room && width > indent_width))) end_line();
    while (is_too_wide()) {
      const std::size_t left = display_.width - std::min(display_.width, width);
      if (left < kNarrowestPiece && width > indent_width) {
        end_line();
        continue;
      }
      const std::size_t taken = std::max(kNarrowestPiece, left);
      if (taken >= text_width) break;
      line.push_back({std::string(TakeColumns(text, taken)), piece.tint});
      text_width -= taken;
      end_line();
    }
    if (is_begun) line.push_back({std::string(gap)});
    width += text_width + (is_begun ? gap.size() : 0);
    line.push_back({std::string(text), piece.tint});
    is_begun = true;
  }
  Line(line);
}

void TextWriter::FlowWords(const std::vector<Span>& start, const std::string& indent,
                           std::string_view text, Tint tint) {
  Flow(start, indent, WordsOf(text, tint), " ");
}

std::vector<Span> WordsOf(std::string_view text, Tint tint) {
  std::vector<Span> words;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    words.push_back({std::string(text.substr(0, end)), tint});
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return words;
}
