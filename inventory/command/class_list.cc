#include "inventory/command/class_list.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "inventory/base/readable.h"
#include "standin/schema.h"

namespace {

/// How many letters have to be put in, taken out or changed.
std::size_t EditDistance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string ClassList() {
  std::size_t width = 0;
  for (const standin::SchemaClass& known : standin::Schema()) {
    width = std::max(width, known.name.size());
  }
  std::string list;
  for (const standin::SchemaClass& known : standin::Schema()) {
    list.append(known.name).append(width + 2 - known.name.size(), ' ');
    list.append(known.description).append("\n");
  }
  return list;
}

std::string_view NearestClass(std::string_view name) {
  static constexpr std::size_t kPrefixLength = std::string_view("KVXSG_").size();
  const std::string wanted = Lower(name);
  std::string_view nearest;
  std::size_t least = std::string_view::npos;
  for (const standin::SchemaClass& known : standin::Schema()) {
    if (name == known.name) return known.name;
    const std::string candidate = Lower(known.name);
    std::size_t distance = std::min(EditDistance(wanted, candidate),
                                    EditDistance(wanted, candidate.substr(kPrefixLength)));
    if (!wanted.empty() && candidate.find(wanted) != std::string::npos) {
      distance = std::min<std::size_t>(distance, 1);
    }
    if (distance < least) {
      least = distance;
      nearest = known.name;
    }
  }
  return nearest;
}
