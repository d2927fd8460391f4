#include "Names.h"

#include <algorithm>
#include <cctype>
#include <numeric>

namespace zrconvert {
namespace {

// Levenshtein's distance, row by row.
std::size_t Distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (const char letter : a) {
    std::size_t diagonal = row[0]++;
    for (std::size_t k = 0; k < b.size(); ++k) {
      const std::size_t above = row[k + 1];
      row[k + 1] = std::min({above + 1, row[k] + 1, diagonal + (letter == b[k] ? 0 : 1)});
      diagonal = above;
    }
  }
  return row.back();
}

}  // namespace

std::string ToLower(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return ToLower(a) == ToLower(b);
}

std::string Join(const std::vector<std::string_view>& words, std::string_view separator) {
  std::string text;
  for (const std::string_view word : words) {
    if (!text.empty()) text += separator;
    text += word;
  }
  return text;
}

std::vector<std::string_view> NearestNames(std::string_view text, std::vector<std::string_view> names,
                                           std::size_t most) {
  const std::string wanted = ToLower(text);
  const auto distance = [&](std::string_view name) { return Distance(wanted, ToLower(name)); };
  std::erase_if(names, [&](std::string_view name) { return distance(name) > 1 + wanted.size() / 4; });
  std::ranges::sort(names);
  names.erase(std::unique(names.begin(), names.end()), names.end());
  std::ranges::stable_sort(names, {}, distance);
  if (names.size() > most) names.resize(most);
  return names;
}

}  // namespace zrconvert
