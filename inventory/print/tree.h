#ifndef INVENTORY_PRINT_TREE_H_
#define INVENTORY_PRINT_TREE_H_

#include <string>
#include <vector>

#include "inventory/print/flow.h"

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

#endif  // INVENTORY_PRINT_TREE_H_
