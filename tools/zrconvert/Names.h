// Small things about words.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zrconvert {

std::string ToLower(std::string_view text);
bool EqualsIgnoringCase(std::string_view a, std::string_view b);

std::string Join(const std::vector<std::string_view>& words, std::string_view separator);

// The names that are few slips of the finger away from the text (letters added, left out or mistaken; case
// does not count), nearest first and at most `most`.
std::vector<std::string_view> NearestNames(std::string_view text, std::vector<std::string_view> names,
                                           std::size_t most);

}  // namespace zrconvert
