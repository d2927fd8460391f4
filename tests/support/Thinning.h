#pragma once

namespace TestSupport {

/// Of so many drawn cases one is to be run: 1, or what the environment's ZR_THINNING asks for.
unsigned Thinning();

}  // namespace TestSupport
