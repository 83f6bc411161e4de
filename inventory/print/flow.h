#ifndef INVENTORY_PRINT_FLOW_H_
#define INVENTORY_PRINT_FLOW_H_

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "inventory/base/sink.h"
#include "inventory/print/display.h"

enum class Tint { kPlain, kStrong, kFaint, kGood, kWarning, kCritical };

/// A piece of text and its colour.
struct Span {
  std::string text;
  Tint tint = Tint::kPlain;
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
  void FlowWords(const std::vector<Span>& start, const std::string& indent, const std::string& text,
                 Tint tint = Tint::kPlain);

  const Display& GetDisplay() const { return display_; }

 private:
  Display display_;
  Sink& output_;
};

/// One row of a tree that is a table, too.
struct TreeRow {
  std::string name;
  Tint tint = Tint::kPlain;  ///< Of the name.
  std::vector<Span> cells;   ///< One for each column behind the name; the last may be missing.
  std::vector<TreeRow> children;
};

/// Writes rows with their children below them, in columns; one that is empty in all rows is left
/// out. Columns that do not fit the width follow below their row, with their titles. `titles` are
/// those of the name and the cells. Each line begins with `indent`.
void WriteTree(TextWriter& writer, const std::string& indent,
               const std::vector<std::string>& titles, const std::vector<TreeRow>& rows);

#endif  // INVENTORY_PRINT_FLOW_H_
