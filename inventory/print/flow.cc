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

/// The text of a span from `begin` to `end`, in its colours.
Span SliceOf(const Span& span, std::size_t begin, std::size_t end) {
  Span slice = {span.text.substr(begin, end - begin), span.tint};
  slice.tint_begin = span.tint_begin - std::min(span.tint_begin, begin);
  if (span.tint_end != std::string::npos) {
    slice.tint_end = span.tint_end - std::min(span.tint_end, begin);
  }
  return slice;
}

/// Where `width` more columns of a text end.
std::size_t EndOfColumns(std::string_view text, std::size_t begin, std::size_t width) {
  std::size_t end = begin;
  for (; end < text.size(); ++end) {
    if ((text[end] & '\xC0') != '\x80' && width-- == 0) break;
  }
  return end;
}

/// A flow in the making: piece after piece is put on its last line.
class Flowing {
 public:
  Flowing(TextWriter& writer, const std::vector<Span>& start, const std::string& indent,
          std::string_view gap)
      : writer_(writer), indent_(indent), gap_(gap), line_(start), width_(WidthOf(start)) {}

  void Add(Span piece) {
    text_width_ = ::WidthOf(piece.text);
    // On a line of its own, if that helps; else it is broken.
    const std::size_t room = LineWidth() - std::min(LineWidth(), indent_width_);
    if (IsTooWide() && (is_begun_ || (text_width_ <= room && width_ > indent_width_))) EndLine();
    std::size_t begin = 0;
    while (IsTooWide()) {
      const std::size_t left = LineWidth() - std::min(LineWidth(), width_);
      if (left < kNarrowestPiece && width_ > indent_width_) {
        EndLine();
        continue;
      }
      const std::size_t taken = std::max(kNarrowestPiece, left);
      if (taken >= text_width_) break;
      const std::size_t end = EndOfColumns(piece.text, begin, taken);
      line_.push_back(SliceOf(piece, begin, end));
      begin = end;
      text_width_ -= taken;
      EndLine();
    }
    if (is_begun_) line_.push_back({std::string(gap_)});
    width_ += text_width_ + (is_begun_ ? gap_.size() : 0);
    line_.push_back(begin == 0 ? std::move(piece) : SliceOf(piece, begin, piece.text.size()));
    is_begun_ = true;
  }

  void End() { writer_.Line(line_); }

 private:
  std::size_t LineWidth() const { return writer_.GetDisplay().width; }

  bool IsTooWide() const {
    const std::size_t needed = text_width_ + (is_begun_ ? gap_.size() : 0);
    return width_ >= LineWidth() || needed > LineWidth() - width_;
  }

  void EndLine() {
    writer_.Line(line_);
    line_ = {{indent_}};
    width_ = indent_width_;
    is_begun_ = false;
  }

  TextWriter& writer_;
  const std::string& indent_;
  const std::size_t indent_width_ = ::WidthOf(indent_);
  std::string_view gap_;
  std::vector<Span> line_;
  std::size_t width_;
  std::size_t text_width_ = 0;  // of what is left of the piece
  bool is_begun_ = false;       // a piece is on the line
};

template <class Take>
void ForEachWord(std::string_view text, const Take& take) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    take(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
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
  Flowing flowing(*this, start, indent, gap);
  for (const Span& piece : pieces) flowing.Add(piece);
  flowing.End();
}

void TextWriter::FlowWords(const std::vector<Span>& start, const std::string& indent,
                           std::string_view text, Tint tint) {
  Flowing flowing(*this, start, indent, " ");
  ForEachWord(text, [&](std::string_view word) { flowing.Add({std::string(word), tint}); });
  flowing.End();
}

std::vector<Span> WordsOf(std::string_view text, Tint tint) {
  std::vector<Span> words;
  ForEachWord(text, [&](std::string_view word) { words.push_back({std::string(word), tint}); });
  return words;
}
