#ifndef COLLECT_RETURN_STRING_DATA_H_
#define COLLECT_RETURN_STRING_DATA_H_

#include <string>

/// Cuts a value that a double quote closes out of a text: it begins one character behind the
/// marker, or behind as many characters as the marker has where the text lacks it, and ends before
/// the quote, after `length` characters or with the text. Writes the quote's place to standard
/// output, -1 for none. A utility; the collection does not need it.
/// Throws std::out_of_range when the value would begin behind the text.
std::string ReturnStringData(const std::string& marker, const std::string& text, int length);

#endif  // COLLECT_RETURN_STRING_DATA_H_
