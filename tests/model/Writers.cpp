#include "Writers.h"

#include <cstddef>

namespace Model {
namespace {

using Channels = std::array<std::uint32_t, 3>;  // red, green, blue at the destination's depth

Channels Filtered(const Value& value, const FilterTables& filter) {
  return {filter[0][value.red >> 8], filter[1][value.green >> 8], filter[2][value.blue >> 8]};
}

Channels Truncated(const Value& value, unsigned bits) {
  const auto cut = [bits](std::uint32_t channel) { return channel >> (16 - bits); };
  return {cut(value.red), cut(value.green), cut(value.blue)};
}

void Store(Memory& memory, std::ptrdiff_t at, unsigned bits, std::uint32_t channel) {
  if (bits == 8) {
    memory.Write(at, static_cast<std::uint8_t>(channel));
  } else {
    memory.Write16(at, channel);
  }
}

void WriteInterleaved(const Destination& destination, Memory& memory, std::ptrdiff_t at,
                      const Channels& channels) {
  const unsigned bytes = destination.bits / 8;
  for (unsigned i = 0; i < 3; ++i)
    Store(memory, at + i * bytes, destination.bits, channels[destination.blueFirst ? 2 - i : i]);
  if (destination.shape == Shape::FourChannels) memory.Write(at + 3, 0xFF);
}

void WritePlanes(const Destination& destination, Memory& memory, std::ptrdiff_t at,
                 std::ptrdiff_t planeDistance, const Channels& channels) {
  for (unsigned i = 0; i < 3; ++i) Store(memory, at + i * planeDistance, destination.bits, channels[i]);
}

FilterTables MakeIdentity() {
  FilterTables tables{};
  for (auto& table : tables)
    for (unsigned i = 0; i < 256; ++i) table[i] = static_cast<std::uint8_t>(i);
  return tables;
}

}  // namespace

const FilterTables& IdentityTables() {
  static const FilterTables tables = MakeIdentity();
  return tables;
}

void WritePixel(const Destination& destination, Memory& memory, LinePlace line, std::uint32_t x,
                const Value& value, const FilterTables& filter) {
  const std::ptrdiff_t at = line.start + std::ptrdiff_t{x} * std::ptrdiff_t{destination.bytes};
  const bool filtered = destination.bits == 8 && destination.shape != Shape::Grey;
  const Channels channels = filtered ? Filtered(value, filter) : Truncated(value, destination.bits);
  switch (destination.shape) {
    case Shape::Grey:
      return Store(memory, at, destination.bits, channels[1]);
    case Shape::Planes:
      return WritePlanes(destination, memory, at, line.planeDistance, channels);
    case Shape::Word565:
      return memory.Write16(at, channels[0] >> 3 << 11 | channels[1] >> 2 << 5 | channels[2] >> 3);
    default:
      return WriteInterleaved(destination, memory, at, channels);
  }
}

}  // namespace Model
