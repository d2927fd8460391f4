#pragma once

#include <utility>
#include <vector>

namespace TestSupport {

/// Walks of the registry through its public interface: by asking for every number a type may have.

/// Types that `source` converts to, in ascending order.
std::vector<long> DestinationsOf(long source);

/// Every registered pair (source, destination), in ascending order.
std::vector<std::pair<long, long>> RegisteredPairs();

}  // namespace TestSupport
