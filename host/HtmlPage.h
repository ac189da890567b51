// HtmlPage: how what a report has counted becomes a page.

#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace kal::host {

class HtmlReport;

// Of what was checked the page shows the names.
void WriteHtmlPage(const HtmlReport& report, const std::vector<std::string>& files,
                   const std::string& company, std::ostream& stream);

// JSON that may stand in a script element: nothing in it can end the element or open a comment.
[[nodiscard]] std::string ForScript(std::string json);

}  // namespace kal::host
