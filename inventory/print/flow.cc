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

std::string Ascii(std::string_view text) {
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

/// Takes the first `width` columns off `part`.
Coloured TakeColumns(Coloured& part, std::size_t width) {
  std::size_t end = 0;
  for (; end < part.text.size(); ++end) {
    if ((part.text[end] & '\xC0') != '\x80' && width-- == 0) break;
  }
  Coloured taken = part;
  taken.text = part.text.substr(0, end);
  part.text.remove_prefix(end);
  part.tint_begin -= std::min(part.tint_begin, end);
  if (part.tint_end != std::string::npos) part.tint_end -= std::min(part.tint_end, end);
  return taken;
}

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
  for (const Span& span : spans) Put(span);
  EndLine();
}

void TextWriter::Put(const Coloured& part) {
  const std::size_t end = std::min(part.tint_end, part.text.size());
  const std::size_t begin = std::min(part.tint_begin, end);
  PutText(part.text.substr(0, begin));
  const bool is_tinted = display_.color && part.tint != Tint::kPlain && begin < end;
  if (is_tinted) Write(kTintCodes[static_cast<std::size_t>(part.tint)]);
  PutText(part.text.substr(begin, end - begin));
  if (is_tinted) Write(kPlainCode);
  PutText(part.text.substr(end));
}

void TextWriter::PutText(std::string_view text) {
  if (display_.utf8) return Write(text);
  ForEachPiece(text, [this](std::string_view piece) { Write(Ascii(piece)); });
}

/// All but blanks that may be the line's last ones.
void TextWriter::Write(std::string_view text) {
  const std::size_t end = text.find_last_not_of(' ') + 1;
  if (end > 0) {
    output_.Write(std::string(std::exchange(blanks_, 0), ' '));
    output_.Write(text.substr(0, end));
  }
  blanks_ += text.size() - end;
}

void TextWriter::EndLine() {
  blanks_ = 0;
  ++line_count_;
  output_.Write("\n");
}

/// A flow in the making: piece after piece is put on its last line.
class TextWriter::Flowing {
 public:
  Flowing(TextWriter& writer, const std::vector<Span>& start, const std::string& indent,
          std::string_view gap)
      : writer_(writer), indent_(indent), gap_(gap), width_(WidthOf(start)) {
    for (const Span& span : start) writer_.Put(span);
  }

  void Add(Coloured piece) {
    std::size_t text_width = ::WidthOf(piece.text);
    const auto is_too_wide = [&] {
      const std::size_t needed = text_width + (is_begun_ ? gap_.size() : 0);
      return width_ >= LineWidth() || needed > LineWidth() - width_;
    };
    // On a line of its own, if that helps; else it is broken.
    const std::size_t room = LineWidth() - std::min(LineWidth(), indent_width_);
    if (is_too_wide() && (is_begun_ || (text_width <= room && width_ > indent_width_))) EndLine();
    while (is_too_wide()) {
      const std::size_t left = LineWidth() - std::min(LineWidth(), width_);
      if (left < kNarrowestPiece && width_ > indent_width_) {
        EndLine();
        continue;
      }
      const std::size_t taken = std::max(kNarrowestPiece, left);
      if (taken >= text_width) break;
      writer_.Put(TakeColumns(piece, taken));
      text_width -= taken;
      EndLine();
    }
    if (is_begun_) writer_.Put(gap_);
    width_ += text_width + (is_begun_ ? gap_.size() : 0);
    writer_.Put(piece);
    is_begun_ = true;
  }

  void End() { writer_.EndLine(); }

 private:
  std::size_t LineWidth() const { return writer_.display_.width; }

  void EndLine() {
    writer_.EndLine();
    writer_.Put(std::string_view(indent_));
    width_ = indent_width_;
    is_begun_ = false;
  }

  TextWriter& writer_;
  const std::string& indent_;
  const std::size_t indent_width_ = ::WidthOf(indent_);
  std::string_view gap_;
  std::size_t width_;      // of the line so far
  bool is_begun_ = false;  // a piece is on the line
};

void TextWriter::Flow(const std::vector<Span>& start, const std::string& indent,
                      const std::vector<Span>& pieces, std::string_view gap) {
  Flowing flowing(*this, start, indent, gap);
  for (const Span& piece : pieces) flowing.Add(piece);
  flowing.End();
}

void TextWriter::FlowWords(const std::vector<Span>& start, const std::string& indent,
                           std::string_view text, Tint tint) {
  Flowing flowing(*this, start, indent, " ");
  ForEachWord(text, [&](std::string_view word) { flowing.Add({word, tint}); });
  flowing.End();
}

std::vector<Span> WordsOf(std::string_view text, Tint tint) {
  std::vector<Span> words;
  ForEachWord(text, [&](std::string_view word) { words.push_back({std::string(word), tint}); });
  return words;
}
