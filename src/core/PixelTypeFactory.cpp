#include <ZrConvertersLib/PixelTypeFactory.h>

#include <ZrConvertersLib/PixelConverter.h>
#include <ZrConvertersLib/PixelType.h>
#include <ZrUtilsLib/LockScope.h>

#include <memory>
#include <new>

namespace ZrConvertersLib {

using ZrUtilsLib::LockScope;
using ZrUtilsLib::Mutex;
using ZrUtilsLib::Result;
using ZrUtilsLib::ResultCode;

// Other units register from their own static initialisers, before or after this one's. The pointers are
// therefore null from the very start (no initialiser runs for them) and everything behind them is made by the
// first call.
constinit Mutex* PixelTypeFactoryInternal::sMutex = nullptr;
constinit PixelTypeFactoryInternal* PixelTypeFactory::sInternal = nullptr;

namespace {

/// Also constant-initialised: loading the library only registers its destructor, which runs at unload.
constinit PixelTypeFactoryCleanup sPixelTypeFactoryCleanup;

/// The registry's lock. Threads whose first calls meet each make one; the first to store its own wins.
/// Not every standard library that this is built with has std::atomic_ref.
Mutex& RegistryMutex() {
  Mutex** const shared = &PixelTypeFactoryInternal::sMutex;
  Mutex* mutex = __atomic_load_n(shared, __ATOMIC_ACQUIRE);
  if (mutex != nullptr) return *mutex;
  auto fresh = std::make_unique<Mutex>(nullptr, nullptr);
  if (!__atomic_compare_exchange_n(shared, &mutex, fresh.get(), false, __ATOMIC_ACQ_REL, __ATOMIC_ACQUIRE))
    return *mutex;
  return *fresh.release();
}

}  // namespace

PixelTypeFactoryInternal::~PixelTypeFactoryInternal() {
  for (const auto& [id, type] : mTypes) delete type;
  for (const PixelConverter* converter : mOwnedConverters) delete converter;
}

bool PixelTypeFactoryCleanup::CreateInternal() {
  PixelTypeFactoryInternal*& internal = PixelTypeFactory::sInternal;
  if (internal == nullptr) internal = new (std::nothrow) PixelTypeFactoryInternal;
  return internal != nullptr;
}

PixelTypeFactoryCleanup::~PixelTypeFactoryCleanup() {
  Mutex& mutex = RegistryMutex();
  {
    const LockScope lock(mutex, 0);
    delete PixelTypeFactory::sInternal;
    PixelTypeFactory::sInternal = nullptr;
  }
  PixelTypeFactoryInternal::sMutex = nullptr;
  delete &mutex;
}

Result PixelTypeFactory::RegisterPixelType(const long& id, const PixelType* type, const char*) {
  const LockScope lock(RegistryMutex(), 0);
  if (!PixelTypeFactoryCleanup::CreateInternal()) return ResultCode::RegistryNotCreated;
  auto& types = sInternal->mTypes;
  if (types.contains(id)) return ResultCode::AlreadyRegistered;
  std::unique_ptr<const PixelType> clone(type->Clone());
  types.emplace(id, clone.get());
  static_cast<void>(clone.release());  // the registry has it
  return ResultCode::Success;
}

Result PixelTypeFactory::RegisterPixelConverter(const long& source, const long& destination,
                                                const PixelConverter* converter) {
  const LockScope lock(RegistryMutex(), 0);
  if (!PixelTypeFactoryCleanup::CreateInternal()) return ResultCode::RegistryNotCreated;
  const auto [place, stored] = sInternal->mConverters.try_emplace({source, destination}, converter);
  return stored ? ResultCode::Success : ResultCode::AlreadyRegistered;
}

Result PixelTypeFactory::RegisterPixelConverter(const PixelConverter& converter) {
  return RegisterPixelConverter(converter.GetSourceType(), converter.GetDestinationType(), &converter);
}

bool PixelTypeFactory::HasPixelType(const long& id) {
  const LockScope lock(RegistryMutex(), 0);
  return PixelTypeFactoryCleanup::CreateInternal() && sInternal->mTypes.contains(id);
}

const PixelType* PixelTypeFactory::GetPixelType(const long& id) {
  const LockScope lock(RegistryMutex(), 0);
  if (sInternal == nullptr) return nullptr;
  const auto found = sInternal->mTypes.find(id);
  return found == sInternal->mTypes.end() ? nullptr : found->second;
}

bool PixelTypeFactory::HasConverter(const long& source, const long& destination) {
  const LockScope lock(RegistryMutex(), 0);
  return HasConverterUnprotected(source, destination);
}

bool PixelTypeFactory::HasConverterUnprotected(const long& source, const long& destination) {
  return PixelTypeFactoryCleanup::CreateInternal() && sInternal->mConverters.contains({source, destination});
}

const PixelConverter* PixelTypeFactory::GetConverter(const long& source, const long& destination) {
  const LockScope lock(RegistryMutex(), 0);
  if (sInternal == nullptr || sInternal->mConverters.empty()) return nullptr;
  const auto found = sInternal->mConverters.find({source, destination});
  // Callers rely on a result that is not null, so an unknown pair gets the first registered converter.
  return found == sInternal->mConverters.end() ? sInternal->mConverters.begin()->second : found->second;
}

}  // namespace ZrConvertersLib
