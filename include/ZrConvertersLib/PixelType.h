#pragma once

#include <ZrConvertersLib/Export.h>

/// @file
/// What the registry knows of a pixel format.

namespace ZrConvertersLib {

class PixelConverter;

/// One pixel format: its type ID (see PixelTypes.h), its registered sizes and a Bayer flag. Immutable, so any
/// number of threads may read one object.
class ZR_EXPORT PixelType {
 public:
  /// `bitSize` and `byteSize` are bits and bytes per pixel.
  PixelType(const long& id, unsigned short bitSize, unsigned short byteSize, bool bayerPattern);
  virtual ~PixelType();

  /// A new plain PixelType of the same values, whatever the dynamic class of this one; the caller owns it.
  virtual PixelType* Clone() const;

  virtual const long& GetTypeID() const;

  /// Bits per pixel as registered. Some types register another number than they occupy in memory: RGB10, for
  /// instance, the 10 bits of a channel. To size a buffer, call DescribeFrame (Format.h).
  virtual unsigned short GetPixelBitSize() const;

  /// Bytes per pixel as registered: packed formats register the size of an unpacked pixel.
  virtual unsigned short GetPixelByteSize() const;

  /// False for every type of the library, the Bayer types included.
  virtual bool IsBayerPattern() const;

  /// width x height x GetPixelByteSize() in bytes. The 32-bit product wraps around; nothing checks it.
  virtual unsigned GetBufferSizeFor(unsigned width, unsigned height) const;

  /// Whether the registry holds a converter from this type to `other`.
  bool HasConverterTo(const PixelType& other) const;

  /// The converter from this type to `other`. Call HasConverterTo first: for a pair without a converter this
  /// returns the converter of another pair (see PixelTypeFactory::GetConverter).
  const PixelConverter* GetConverterTo(const PixelType& other) const;

 private:
  long mTypeID;
  unsigned short mBitSize;
  unsigned short mByteSize;
  bool mBayerPattern;
};

/// Whether `type` registers `bitSize` bits per pixel. The remaining arguments have no effect.
ZR_EXPORT bool PixelTypeMatches(const PixelType& type, unsigned bitSize, long, bool, bool, long);

}  // namespace ZrConvertersLib
