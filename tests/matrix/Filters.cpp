#include "Filters.h"

#include <algorithm>
#include <array>
#include <utility>

#include "support/Pattern.h"

namespace Matrix {
namespace {

using ZrConvertersLib::RGBFilter;

Model::FilterTables TablesOf(const RGBFilter& filter) {
  Model::FilterTables tables{};
  std::copy_n(filter.GetRed(), 256, tables[0].begin());
  std::copy_n(filter.GetGreen(), 256, tables[1].begin());
  std::copy_n(filter.GetBlue(), 256, tables[2].begin());
  return tables;
}

/// The interface only makes straight tables. The filter owns them, so they may be written through.
void Assign(RGBFilter& filter, const Model::FilterTables& tables) {
  std::ranges::copy(tables[0], const_cast<unsigned char*>(filter.GetRed()));
  std::ranges::copy(tables[1], const_cast<unsigned char*>(filter.GetGreen()));
  std::ranges::copy(tables[2], const_cast<unsigned char*>(filter.GetBlue()));
}

std::unique_ptr<RGBFilter> Noise() {
  Model::FilterTables tables{};
  for (unsigned i = 0; i < 3; ++i) TestSupport::Fill(tables[i], TestSupport::Content::Noise, 1000 * i);
  auto filter = std::make_unique<RGBFilter>();
  Assign(*filter, tables);
  return filter;
}

std::unique_ptr<RGBFilter> Gain() {
  auto filter = std::make_unique<RGBFilter>();
  filter->SetMultipliers(1.7, -1.0, 0.4, -20, 255, 30);
  return filter;
}

/// One table for all channels.
std::unique_ptr<RGBFilter> Brighter() {
  auto filter = std::make_unique<RGBFilter>();
  filter->SetMultipliers(1.3, 1.3, 1.3, 7, 7, 7);
  return filter;
}

std::unique_ptr<RGBFilter> AlmostIdentity() {
  auto filter = std::make_unique<RGBFilter>();
  Model::FilterTables tables = TablesOf(*filter);
  tables[2][255] = 254;
  Assign(*filter, tables);
  return filter;
}

Filter Make(const char* name, std::unique_ptr<RGBFilter> object) {
  const Model::FilterTables tables = object ? TablesOf(*object) : Model::IdentityTables();
  return {name, std::move(object), tables};
}

}  // namespace

const Filter& GetFilter(unsigned index) {
  static const std::array<Filter, kFilters> filters = {
      Make("none", nullptr),        Make("identity", std::make_unique<RGBFilter>()),
      Make("noise", Noise()),       Make("gain", Gain()),
      Make("brighter", Brighter()), Make("almost identity", AlmostIdentity())};
  return filters.at(index);
}

}  // namespace Matrix
