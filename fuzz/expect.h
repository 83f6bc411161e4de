#ifndef FUZZ_EXPECT_H_
#define FUZZ_EXPECT_H_

#include <cstddef>
#include <string>
#include <string_view>

// What has to hold of every output, whatever the input was. A violation says what it is and aborts:
// that is how a fuzzer is told.

/// `shown` is the text that it is about; its end is shown.
void Expect(bool holds, std::string_view what, std::string_view shown = "");

/// Valid UTF-8, and no control character but "\n", and tabs where `with_tabs`.
void ExpectFitForTerminal(const std::string& text, bool with_tabs = true);

/// No line is wider, in characters.
void ExpectWithin(const std::string& text, std::size_t width);

/// What a monitoring system takes: one line that says how it ends, and that status.
void ExpectCheckLine(const std::string& line, int exit_status);

/// Metrics as OpenMetrics has them: each family in one piece, each of its samples with labels of
/// its own, and the end at the end.
void ExpectMetrics(const std::string& text);

/// The message of an error that is shown in one line.
void ExpectOneLine(const std::string& message);

#endif  // FUZZ_EXPECT_H_
