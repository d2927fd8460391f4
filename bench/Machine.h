#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Bench {

/// What a reader of the figures must know of the run: name and value.
using Facts = std::vector<std::pair<std::string, std::string>>;

Facts DescribeMachine();

}  // namespace Bench
