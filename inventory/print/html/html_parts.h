#ifndef INVENTORY_PRINT_HTML_HTML_PARTS_H_
#define INVENTORY_PRINT_HTML_HTML_PARTS_H_

#include <string>
#include <vector>

#include "inventory/machine/wording.h"
#include "inventory/print/html/html_writer.h"
#include "inventory/print/view.h"

// The parts of the page, each in the file of its name; page.html says where they go.

// html_summary.cc
/// What needs attention, in a sentence with a capital letter.
Attention VerdictOf(const ViewInput& input);
void WriteSummary(const ViewInput& input, HtmlWriter& html);
void WriteContents(const ViewInput& input, HtmlWriter& html);
void WriteFindings(const ViewInput& input, HtmlWriter& html);
/// What was not collected, as plain as the findings.
void WriteLosses(const ViewInput& input, HtmlWriter& html);
void WriteChanges(const ViewInput& input, HtmlWriter& html);

/// html_controllers.cc: a card for each, with its facts and its drawing.
void WriteControllers(const ViewInput& input, HtmlWriter& html);
/// html_drawing.cc: the arrays, then a shelf for each channel with a box for each device.
void WriteDrawing(const Controller& controller, std::size_t index, HtmlWriter& html);
/// html_table.cc: all drives and devices as a tree whose rows sort.
void WriteTable(const ViewInput& input, HtmlWriter& html);
/// html_events.cc
void WriteEvents(const ViewInput& input, HtmlWriter& html);
/// html_runs.cc: the runs of the tools with their times, and what they printed: as much as the
/// page has room for.
void WriteRuns(const ViewInput& input, HtmlWriter& html);

// html_words.cc: what several parts say alike.

/// The shape of a severity, with its letter.
void WriteMark(Severity severity, HtmlWriter& html);
/// "cr", as the style names it.
const char* ClassOf(Severity severity);
/// Where on the page it is: "c0", "c0-d3". The row of the table has the same with "r" in front.
std::string IdOf(const Subject& subject);
/// "Controller 2 “mail”"
std::string TitleOf(const Controller& controller);
/// "A", "1": short enough for the corner of a box.
std::string LabelOf(const DriveArray& array);
/// "9 hard, 114 soft, 3 misc": of what is above 0.
std::string DescribeCounters(const std::vector<ErrorCounters>& counters);

#endif  // INVENTORY_PRINT_HTML_HTML_PARTS_H_
