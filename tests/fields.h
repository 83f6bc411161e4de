#ifndef TESTS_FIELDS_H_
#define TESTS_FIELDS_H_

#include <initializer_list>
#include <string>

/// What the getters return in one text, a "|" behind each and the "\n" of each written as "$".
template <class Record>
std::string Fields(const Record& record,
                   std::initializer_list<std::string (Record::*)() const> getters) {
  std::string text;
  for (const auto getter : getters) {
    for (const char c : (record.*getter)()) text += c == '\n' ? '$' : c;
    text += '|';
  }
  return text;
}

#endif  // TESTS_FIELDS_H_
