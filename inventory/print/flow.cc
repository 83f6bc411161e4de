#include "inventory/print/flow.h"

#include <algorithm>
#include <numeric>
#include <utility>

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

/// Takes the first `width` columns off `span`.
Span TakeColumns(Span& span, std::size_t width) {
  std::size_t end = 0;
  while (end < span.text.size()) {
    if ((span.text[end] & '\xC0') != '\x80' && width-- == 0) break;
    ++end;
  }
  Span taken = span;
  taken.text.resize(end);
  span.text.erase(0, end);
  span.tint_begin -= std::min(span.tint_begin, end);
  if (span.tint_end != std::string::npos) span.tint_end -= std::min(span.tint_end, end);
  return taken;
}

}  // namespace

void TextWriter::Line(const std::vector<Span>& spans) {
  std::string line;
  const auto add = [this, &line](const std::string& text, Tint tint) {
    const bool is_tinted = display_.color && tint != Tint::kPlain && !text.empty();
    if (is_tinted) line += kTintCodes[static_cast<std::size_t>(tint)];
    line += display_.utf8 ? text : Ascii(text);
    if (is_tinted) line += kPlainCode;
  };
  for (const Span& span : spans) {
    const std::size_t end = std::min(span.tint_end, span.text.size());
    const std::size_t begin = std::min(span.tint_begin, end);
    add(span.text.substr(0, begin), Tint::kPlain);
    add(span.text.substr(begin, end - begin), span.tint);
    add(span.text.substr(end), Tint::kPlain);
  }
  line.erase(line.find_last_not_of(' ') + 1);
  ++line_count_;
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
  for (Span piece : pieces) {
    std::size_t text_width = ::WidthOf(piece.text);
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
      line.push_back(TakeColumns(piece, taken));
      text_width -= taken;
      end_line();
    }
    if (is_begun) line.push_back({std::string(gap)});
    width += text_width + (is_begun ? gap.size() : 0);
    line.push_back(std::move(piece));
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
