#pragma once

#include <ZrConvertersLib/RGBFilter.h>

#include <memory>

#include "model/Writers.h"

namespace Matrix {

/// A filter as the library and as the model take it.
struct Filter {
  const char* name;
  std::unique_ptr<ZrConvertersLib::RGBFilter> object;  ///< null: none is passed
  Model::FilterTables tables;
};

enum FilterIndex : unsigned {
  kNoFilter,
  kIdentityFilter,
  kNoiseFilter,
  kGainFilter,
  kBrighterFilter,
  kAlmostIdentityFilter,
  kFilters
};

/// Filters of the matrix. kBrighterFilter has one table for all channels; kAlmostIdentityFilter differs from
/// identity in one entry of the last table.
const Filter& GetFilter(unsigned index);

}  // namespace Matrix
