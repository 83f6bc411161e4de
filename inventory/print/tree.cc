#include "inventory/print/tree.h"

#include <algorithm>

#include "inventory/base/readable.h"

namespace {

constexpr std::string_view kGap = "  ";  // between columns
constexpr std::size_t kNarrowestColumn = 12;
constexpr std::size_t kWidestColumn = 60;  // a wider cell goes below its row

/// The lines that tie a tree together.
struct TreeArt {
  const char* child;
  const char* last_child;
  const char* passing;
  const char* nothing;
};
constexpr TreeArt kUtf8Art = {"├─ ", "└─ ", "│  ", "   "};
constexpr TreeArt kAsciiArt = {"|- ", "`- ", "|  ", "   "};

/// "SIZE 34715 MB"; the title has the colour of a cell that is coloured as a whole.
Span WithTitle(const std::string& title, Span cell) {
  const std::size_t length = title.size() + 1;
  if (cell.tint_begin > 0 || cell.tint_end < cell.text.size()) cell.tint_begin += length;
  if (cell.tint_end != std::string::npos) cell.tint_end += length;
  cell.text.insert(0, title + " ");
  return cell;
}

class TreeWriter {
 public:
  TreeWriter(TextWriter& writer, const std::string& indent, const std::vector<std::string>& titles)
      : writer_(writer),
        indent_(indent),
        titles_(titles),
        art_(writer.GetDisplay().utf8 ? kUtf8Art : kAsciiArt),
        widths_(titles.size() - 1, 0) {}

  void Write(const std::vector<TreeRow>& rows) {
    for (const TreeRow& row : rows) Measure(row, 0);
    FitColumns();
    std::vector<Span> heading = {{indent_}, {titles_[0], Tint::kFaint}};
    heading.push_back({std::string(names_ - WidthOf(titles_[0]), ' ')});
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      AddCell(heading, i, {titles_[i + 1], Tint::kFaint});
    }
    writer_.Line(heading);
    for (const TreeRow& row : rows) WriteRow(row, "", "", 0);
  }

 private:
  void Measure(const TreeRow& row, std::size_t depth) {
    const std::size_t lead = depth * WidthOf(art_.child);
    names_ = std::max(names_, lead + std::min(kWidestColumn, WidthOf(row.name)));
    for (std::size_t i = 0; i < row.cells.size(); ++i) {
      widths_[i] = std::max(widths_[i], std::min(kWidestColumn, WidthOf(row.cells[i].text)));
    }
    for (const TreeRow& child : row.children) Measure(child, depth + 1);
  }

  void FitColumns() {
    std::size_t room = writer_.GetDisplay().width - WidthOf(indent_);
    names_ = std::min(std::max(names_, WidthOf(titles_[0])), room);
    room -= names_;
    bool is_full = false;
    for (std::size_t i = 0; i < widths_.size(); ++i) {
      if (widths_[i] > 0) widths_[i] = std::max(widths_[i], WidthOf(titles_[i + 1]));
      if (widths_[i] == 0 || is_full) {
        is_shown_.push_back(false);
        continue;
      }
      const std::size_t needed = kGap.size() + widths_[i];
      // Once a column does not fit, none behind it does: their order stays. It may have what is
      // left, for the cells that fit into that.
      is_full = needed > room;
      is_shown_.push_back(!is_full || room >= kGap.size() + kNarrowestColumn);
      if (is_full) {
        widths_[i] = room - std::min(room, kGap.size());
      } else {
        room -= needed;
      }
    }
  }

  bool Fits(std::size_t column, const Span& cell) const {
    return is_shown_[column] && WidthOf(cell.text) <= widths_[column];
  }

  void AddCell(std::vector<Span>& line, std::size_t column, const Span& cell) const {
    if (!is_shown_[column]) return;
    const bool fits = Fits(column, cell);
    line.push_back({std::string(kGap)});
    if (fits) line.push_back(cell);
    line.push_back({std::string(widths_[column] - (fits ? WidthOf(cell.text) : 0), ' ')});
  }

  void WriteRow(const TreeRow& row, const std::string& lead, const std::string& art,
                std::size_t depth) {
    std::string lead_below = lead;
    if (depth > 0) lead_below += art == art_.last_child ? art_.nothing : art_.passing;
    const std::string start =
        lead_below + (row.children.empty() ? art_.nothing : art_.passing) + " ";

    const std::size_t lead_width = WidthOf(lead) + WidthOf(art);
    const std::size_t name_room = names_ - std::min(names_, lead_width);
    std::vector<Span> line = {{indent_}, {lead + art, Tint::kFaint}};
    if (const std::size_t width = WidthOf(row.name); width <= name_room) {
      line.push_back({row.name, row.tint});
      line.push_back({std::string(name_room - width, ' ')});
    } else {
      writer_.FlowWords(line, indent_ + start, row.name, row.tint);
      line = {{indent_}, {lead_below, Tint::kFaint}};
      line.push_back({std::string(names_ - std::min(names_, WidthOf(lead_below)), ' ')});
    }
    std::vector<Span> below;
    for (std::size_t i = 0; i < row.cells.size(); ++i) {
      AddCell(line, i, row.cells[i]);
      if (!Fits(i, row.cells[i]) && !row.cells[i].text.empty()) {
        below.push_back(WithTitle(titles_[i + 1], row.cells[i]));
      }
    }
    writer_.Line(line);
    if (!below.empty()) {
      writer_.Flow({{indent_}, {start, Tint::kFaint}}, indent_ + start, below, kGap);
    }
    for (const TreeRow& child : row.children) {
      const bool is_last = &child == &row.children.back();
      WriteRow(child, lead_below, is_last ? art_.last_child : art_.child, depth + 1);
    }
  }

  TextWriter& writer_;
  const std::string& indent_;
  const std::vector<std::string>& titles_;
  const TreeArt& art_;
  std::size_t names_ = 0;            // the width of the names, their lines included
  std::vector<std::size_t> widths_;  // of the cells
  std::vector<bool> is_shown_;
};

}  // namespace

void WriteTree(TextWriter& writer, const std::string& indent,
               const std::vector<std::string>& titles, const std::vector<TreeRow>& rows) {
  TreeWriter(writer, indent, titles).Write(rows);
}
