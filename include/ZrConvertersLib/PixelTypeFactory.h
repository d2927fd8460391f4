#pragma once

#include <ZrConvertersLib/Export.h>
#include <ZrUtilsLib/Mutex.h>
#include <ZrUtilsLib/Result.h>

#include <list>
#include <map>
#include <utility>

/// @file
/// The process-wide registry of pixel types and converters.

namespace ZrConvertersLib {

class PixelConverter;
class PixelType;

/// What the registry holds. Reached only through PixelTypeFactory, under its lock.
class ZR_EXPORT PixelTypeFactoryInternal {
 public:
  PixelTypeFactoryInternal() = default;

  /// Deletes the registered types and the owned converters; registered converters are left alone.
  ~PixelTypeFactoryInternal();

  PixelTypeFactoryInternal(const PixelTypeFactoryInternal&) = delete;
  PixelTypeFactoryInternal& operator=(const PixelTypeFactoryInternal&) = delete;

  /// By source type ID, then destination type ID. Not owned.
  std::map<std::pair<long, long>, const PixelConverter*> mConverters;
  /// Converters that are deleted with the registry.
  std::list<PixelConverter*> mOwnedConverters;
  /// By type ID: the registry's own clones.
  std::map<long, const PixelType*> mTypes;

  /// The registry's lock; null before the first operation creates it and after the clean-up.
  static ZrUtilsLib::Mutex* sMutex;
};

/// The registry. Loading the library fills it with all pixel types and converters; callers may add their own.
///
/// Thread-safety: every operation but HasConverterUnprotected may be called from any number of threads at
/// once, also as the first use of the library. Unloading the library must not race with other calls.
class ZR_EXPORT PixelTypeFactory {
 public:
  /// Stores a clone of `type` under `id`. AlreadyRegistered (18) when the ID is taken: the earlier type
  /// stays. RegistryNotCreated (24) without memory for the registry. `name` has no effect and may be null.
  static ZrUtilsLib::Result RegisterPixelType(const long& id, const PixelType* type, const char* name);

  /// Stores `converter` for the pair of type IDs. It is not copied and not owned: it must outlive the
  /// registry's use of it. AlreadyRegistered (18) when the pair is taken: the earlier converter stays.
  /// RegistryNotCreated (24) without memory for the registry.
  static ZrUtilsLib::Result RegisterPixelConverter(const long& source, const long& destination,
                                                   const PixelConverter* converter);

  /// The same for the converter's own pair.
  static ZrUtilsLib::Result RegisterPixelConverter(const PixelConverter& converter);

  static bool HasPixelType(const long& id);

  /// The type registered under `id`, or null. The registry owns it; it lives until the library is unloaded.
  static const PixelType* GetPixelType(const long& id);

  static bool HasConverter(const long& source, const long& destination);

  /// HasConverter for a caller that already holds the registry's lock.
  static bool HasConverterUnprotected(const long& source, const long& destination);

  /// The converter of the pair. Call HasConverter first: for a pair without a converter this returns NOT null
  /// but the converter of the registered pair with the lowest IDs. Null only while nothing is registered.
  static const PixelConverter* GetConverter(const long& source, const long& destination);

  /// Null before the first registration and after the clean-up.
  static PixelTypeFactoryInternal* sInternal;
};

/// Destroys the registry and its lock when the library is unloaded.
class ZR_EXPORT PixelTypeFactoryCleanup {
 public:
  constexpr PixelTypeFactoryCleanup() noexcept = default;
  ~PixelTypeFactoryCleanup();

  PixelTypeFactoryCleanup(const PixelTypeFactoryCleanup&) = delete;
  PixelTypeFactoryCleanup& operator=(const PixelTypeFactoryCleanup&) = delete;

  /// Creates the registry if there is none; the caller holds the lock. False without memory for it.
  static bool CreateInternal();
};

}  // namespace ZrConvertersLib
