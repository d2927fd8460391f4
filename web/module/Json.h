// What the page is told, as JSON.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace page {

// The texts are ASCII without control characters.
std::string Quoted(std::string_view text);

// "[a, b]" of values that are JSON already.
std::string Array(const std::vector<std::string>& values);

// {"name": value, ...} of values that are JSON already.
struct Member {
  std::string_view name;
  std::string value;
};
std::string Object(const std::vector<Member>& members);

}  // namespace page
