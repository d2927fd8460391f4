#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace TestSupport {

/// Where an image lies in its GuardedBuffer.
struct Placement {
  enum class At {
    End,     ///< its last byte is the last before an unmapped page
    Begin,   ///< its first byte is the first after an unmapped page
    Middle,  ///< at `misalignment` bytes after a multiple of 64
  } at = At::End;
  std::size_t misalignment = 0;
};

const char* NameOf(Placement::At at);

/// Memory between two unmapped pages, for one image at a time.
///
/// A read or write beyond an unmapped page crashes; a write anywhere else near the image is found by
/// FirstDamage, since the bytes around it are canaries.
class GuardedBuffer {
 public:
  /// Room for images of up to `capacity` bytes. Memory is taken from the system as it is used. Throws
  /// std::bad_alloc.
  explicit GuardedBuffer(std::size_t capacity);
  ~GuardedBuffer();
  GuardedBuffer(const GuardedBuffer&) = delete;
  GuardedBuffer& operator=(const GuardedBuffer&) = delete;

  /// Copies `image` to its place, surrounds it with canaries and returns it there.
  std::span<std::uint8_t> Place(std::span<const std::uint8_t> image, Placement placement);

  /// All of it, zeros at first: for images too large to be copied to their place. It begins with a page and
  /// ends with one, so it may be a little longer than asked for.
  std::span<std::uint8_t> All() const { return mUsable; }

  /// Offset of the first changed canary from the image's first byte: negative before the image.
  std::optional<std::ptrdiff_t> FirstDamage() const;

 private:
  static constexpr std::size_t kCanaries = 512;

  std::uint8_t* StartOf(std::size_t size, Placement placement) const;
  std::span<std::uint8_t> CanariesBefore() const;
  std::span<std::uint8_t> CanariesAfter() const;

  std::uint8_t* mMapped;
  std::size_t mMappedSize;
  std::span<std::uint8_t> mUsable;
  std::span<std::uint8_t> mImage;
};

}  // namespace TestSupport
