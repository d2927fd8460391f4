#pragma once

#include <vector>

#include "Measure.h"

namespace Bench {

/// A conversion that another library has, too.
struct Peer {
  const char* library;
  const char* pair;  ///< SOURCE:DESTINATION
  Demosaic demosaic;
  bool filtered;
  const char* arithmetic;  ///< where it differs on purpose; empty where it does the same
  void (*convert)(unsigned char* source, unsigned char* destination, Size size);
};

std::vector<Peer> OpenCvPeers();
std::vector<Peer> YuvPeers();

}  // namespace Bench
