#ifndef INVENTORY_PRINT_FLOW_H_
#define INVENTORY_PRINT_FLOW_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "inventory/base/sink.h"
#include "inventory/print/display.h"

enum class Tint { kPlain, kStrong, kFaint, kGood, kWarning, kCritical };

/// A piece of text and its colour, which only a part of it may have.
struct Span {
  std::string text;
  Tint tint = Tint::kPlain;
  std::size_t tint_begin = 0;
  std::size_t tint_end = std::string::npos;
};

/// A span of which somebody else keeps the text.
struct Coloured {
  // NOLINTNEXTLINE(google-explicit-constructor): a span is one
  Coloured(const Span& span)
      : text(span.text), tint(span.tint), tint_begin(span.tint_begin), tint_end(span.tint_end) {}
  // NOLINTNEXTLINE(google-explicit-constructor): so is a plain text
  Coloured(std::string_view plain, Tint all = Tint::kPlain) : text(plain), tint(all) {}

  std::string_view text;
  Tint tint;
  std::size_t tint_begin = 0;
  std::size_t tint_end = std::string::npos;
};

/// Writes lines of Readable text within a display's width, in its colours and characters: what is
/// not ASCII becomes "?" where the display has no UTF-8.
class TextWriter {
 public:
  TextWriter(const Display& display, Sink& output) : display_(display), output_(output) {}

  /// The spans one behind the other. The caller has seen to their width.
  void Line(const std::vector<Span>& spans);
  void Line() { Line({}); }

  /// `start`, then the pieces, separated by `gap`, as many to a line as fit; the following lines
  /// begin with `indent`. A piece that is too wide for a line of its own is broken.
  void Flow(const std::vector<Span>& start, const std::string& indent,
            const std::vector<Span>& pieces, std::string_view gap);

  /// As Flow, the words of a text as the pieces.
  void FlowWords(const std::vector<Span>& start, const std::string& indent, std::string_view text,
                 Tint tint = Tint::kPlain);

  const Display& GetDisplay() const { return display_; }
  /// How many there are so far.
  std::size_t GetLineCount() const { return line_count_; }

 private:
  class Flowing;

  // A line is written part by part, since one may be as long as an output.
  void Put(const Coloured& part);
  void PutText(std::string_view text);
  void Write(std::string_view text);
  void EndLine();

  Display display_;
  Sink& output_;
  std::size_t line_count_ = 0;
  std::size_t blanks_ = 0;  // that the line may end with
};

/// The words of a text, separated by single blanks, as pieces to flow.
std::vector<Span> WordsOf(std::string_view text, Tint tint = Tint::kPlain);

#endif  // INVENTORY_PRINT_FLOW_H_
