#include "Json.h"

namespace page {
namespace {

std::string Joined(const std::vector<std::string>& values) {
  std::string all;
  for (const std::string& value : values) all += (all.empty() ? "" : ",") + value;
  return all;
}

}  // namespace

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

std::string Array(const std::vector<std::string>& values) {
  return "[" + Joined(values) + "]";
}

std::string Object(const std::vector<Member>& members) {
  std::vector<std::string> values;
  for (const Member& member : members) values.push_back(Quoted(member.name) + ":" + member.value);
  return "{" + Joined(values) + "}";
}

}  // namespace page
