#include "frame/Findings.h"

#include <algorithm>

#include "frame/modCommonCostanti.h"

namespace kal {

void Findings::Clear(ResultString string) {
  std::erase_if(findings_, [string](const Finding& finding) { return finding.string == string; });
}

std::string Findings::Text(ResultString string) const {
  std::string joined;
  for (const Finding& finding : findings_) {
    if (finding.string == string) {
      joined += joined.empty() ? std::string_view() : kCrLf;
      joined += finding.text;
    }
  }
  return joined;
}

bool Findings::IsEmpty(ResultString string) const {
  return std::ranges::none_of(findings_, [string](const Finding& finding) {
    return finding.string == string && !finding.text.empty();
  });
}

bool Findings::IsEmpty() const {
  return std::ranges::all_of(findings_, &std::string::empty, &Finding::text);
}

}  // namespace kal
