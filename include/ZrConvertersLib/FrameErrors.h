#pragma once

#include <ZrConvertersLib/Export.h>
#include <ZrUtilsLib/Result.h>

#include <cstdint>
#include <string_view>

/// @file
/// The result codes of the checked interface, and words for every code of the library.

namespace ZrConvertersLib {

/// Why the checked interface refused a call. A refused call changes no buffer and no object.
namespace FrameError {
inline constexpr std::uint32_t UnknownFormat = 0x8001;     ///< no format has this ID, name or code
inline constexpr std::uint32_t NoConverter = 0x8002;       ///< both formats exist, the conversion does not
inline constexpr std::uint32_t ZeroSize = 0x8003;          ///< width or height is 0
inline constexpr std::uint32_t WidthNotAllowed = 0x8004;   ///< not a multiple of the format's group of pixels
inline constexpr std::uint32_t FrameTooSmall = 0x8005;     ///< a mosaic needs at least one whole tile
inline constexpr std::uint32_t FrameTooLarge = 0x8006;     ///< a line beyond 512 MiB, or sizes beyond 64 bits
inline constexpr std::uint32_t StrideTooSmall = 0x8007;    ///< the stride is less than a line's bytes
inline constexpr std::uint32_t InvalidPattern = 0x8008;    ///< no MosaicPattern of the source's family
inline constexpr std::uint32_t InvalidDemosaic = 0x8009;   ///< no value of Demosaic
inline constexpr std::uint32_t InvalidMatrix = 0x800A;     ///< no value of ColourMatrix
inline constexpr std::uint32_t RegionOutside = 0x800B;     ///< the region leaves the source frame
inline constexpr std::uint32_t RegionNotAllowed = 0x800C;  ///< the region cuts groups of the destination
inline constexpr std::uint32_t OutOfMemory = 0x800D;       ///< no memory for the converter's own buffers
inline constexpr std::uint32_t NotConfigured = 0x800E;     ///< the converter was not configured
inline constexpr std::uint32_t NullSource = 0x800F;        ///< the source view has no data
inline constexpr std::uint32_t NullDestination = 0x8010;   ///< the destination view has no data
inline constexpr std::uint32_t SourceSizeDiffers = 0x8011;  ///< source width or height is not the configured
inline constexpr std::uint32_t DestinationSizeDiffers = 0x8012;  ///< destination width or height likewise
inline constexpr std::uint32_t SourceTooSmall = 0x8013;  ///< the source view has fewer bytes than the frame
inline constexpr std::uint32_t DestinationTooSmall = 0x8014;  ///< the destination view likewise
inline constexpr std::uint32_t BuffersOverlap = 0x8015;       ///< source and destination share bytes
inline constexpr std::uint32_t LinesOutside = 0x8016;         ///< the band leaves the destination picture
inline constexpr std::uint32_t InvalidTone = 0x8017;          ///< a tone setting has no meaning
inline constexpr std::uint32_t MatrixUnknown = 0x8018;        ///< the library lacks the code's colour matrix
inline constexpr std::uint32_t InvalidPacking = 0x8019;       ///< no value of PackingOrder
}  // namespace FrameError

/// One sentence (without a full stop) that says in English what a result code of this library means. Never
/// empty; static storage. May be called from any thread.
ZR_EXPORT std::string_view ResultText(std::uint32_t code) noexcept;

/// The same for a result.
ZR_EXPORT std::string_view ResultText(const ZrUtilsLib::Result& result) noexcept;

}  // namespace ZrConvertersLib
