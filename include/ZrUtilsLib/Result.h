#pragma once

#include <cstdint>

/// @file
/// The value every fallible operation returns.

namespace ZrUtilsLib {

/// The codes in use. 0 is success; every other code says why the operation was not, or not fully, carried
/// out.
enum class ResultCode : std::uint32_t {
  Success = 0,
  AlreadyRegistered = 18,   ///< the type or pair is known already; the earlier registration stays
  RegistryNotCreated = 24,  ///< there was no memory for the registry
  NotSupported = 26,        ///< this converter does not offer the operation
  FileNotOpened = 16384,    ///< the file could not be opened for writing
};

/// Outcome of an operation: a 32-bit code, returned by value.
class Result {
 public:
  constexpr Result(std::uint32_t code = 0) noexcept : mCode(code) {}
  constexpr Result(ResultCode code) noexcept : mCode(static_cast<std::uint32_t>(code)) {}

  constexpr std::uint32_t GetCode() const noexcept { return mCode; }
  constexpr bool IsSuccess() const noexcept { return mCode == 0; }

  friend constexpr bool operator==(const Result&, const Result&) noexcept = default;

 private:
  std::uint32_t mCode;
};

}  // namespace ZrUtilsLib
