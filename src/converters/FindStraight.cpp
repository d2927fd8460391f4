#include "converters/FindStraight.h"

#include <algorithm>
#include <iterator>

namespace ZrConvertersLib {

using simd::StraightTable;

namespace {

constexpr int kTable = 256, kRow = StraightTable::kEntries, kLeast = -128, kMost = 127;

/// Entries of the rising line between its limits.
struct Span {
  int first, end;
};

Span SpanOf(const std::uint8_t* table) {
  int first = 0, end = kTable;
  while (first < kTable && table[first] == table[0]) ++first;
  while (end > first && table[end - 1] == 0xFF) --end;
  return {first, end};
}

/// The mean of what the line rises from an entry to the one `low` further on, over all such pairs. The
/// mean's whole part is the least rise, and its fraction orders the parts by how soon they rise one more.
void SetRise(StraightTable& form, const std::uint8_t* table, Span span) {
  const int pairs = std::max(span.end - span.first + 1 - kRow, 1);
  int sum = 0;
  for (int low = 0; low < kRow; ++low) {
    const int rise = sum / pairs;
    form.rise[low] = static_cast<std::uint8_t>(rise);
    form.fraction[low] = static_cast<std::int8_t>(sum - rise * pairs + kLeast + 1);
    const int from = std::min(span.first + low, kTable - 1 - pairs);
    sum += table[from + pairs] - table[from];
  }
}

std::uint8_t EntryOf(const StraightTable& form, int high, int low) {
  const int rise = form.rise[low] + (form.fraction[low] > form.threshold[high] ? 1 : 0);
  return static_cast<std::uint8_t>(std::min(form.base[high] + std::max(rise - form.limit[high], 0), 0xFF));
}

bool IsOnLine(int entry, int lowest) {
  return entry > lowest && entry < 0xFF;
}

bool Fits(const StraightTable& form, const std::uint8_t* row, int high) {
  bool fits = true;
  for (int low = 0; low < kRow; ++low) fits &= EntryOf(form, high, low) == row[low];
  return fits;
}

/// Finds the base, limit and threshold of one row of a table that begins with `lowest`. Where all that is
/// seen of a row rises alike, the line is taken to be below the limit, or above the base, by as much as
/// possible.
bool SetRow(StraightTable& form, const std::uint8_t* row, int high, int lowest) {
  const bool isLimited = row[0] == lowest;
  int least = kTable, most = -kTable;
  for (int low = 0; low < kRow; ++low) {
    if (!IsOnLine(row[low], lowest)) continue;
    least = std::min(least, row[low] - form.rise[low]);
    most = std::max(most, row[low] - form.rise[low]);
  }
  const int base = isLimited ? most - 1 : least;
  // Greatest fraction of the entries that do not rise one more, least of those that do.
  int below = kLeast, above = kMost + 1;
  for (int low = 0; low < kRow; ++low) {
    if (!IsOnLine(row[low], lowest)) continue;
    if (row[low] - form.rise[low] == base)
      below = std::max<int>(below, form.fraction[low]);
    else
      above = std::min<int>(above, form.fraction[low]);
  }
  const bool isConstant = most < least;
  form.base[high] = static_cast<std::uint8_t>(isConstant ? row[0] : isLimited ? lowest : base);
  form.limit[high] = static_cast<std::uint8_t>(isConstant ? 0xFF : isLimited ? lowest - base : 0);
  form.threshold[high] = static_cast<std::int8_t>(isConstant ? kMost : isLimited ? above - 1 : below);
  return Fits(form, row, high);
}

bool FindRising(StraightTable& form, const std::uint8_t* table) {
  SetRise(form, table, SpanOf(table));
  bool fits = true;
  for (int high = 0; high < kTable / kRow; ++high)
    fits = fits && SetRow(form, table + high * kRow, high, table[0]);
  return fits;
}

template <class Part>
void Reverse(Part& part) {
  std::reverse(std::begin(part), std::end(part));
}

}  // namespace

/// A falling line is a rising one from the other end.
bool FindStraight(const std::uint8_t* table, StraightTable& form) {
  if (table[kTable - 1] >= table[0]) return FindRising(form, table);
  std::uint8_t reversed[kTable];
  std::reverse_copy(table, table + kTable, reversed);
  if (!FindRising(form, reversed)) return false;
  Reverse(form.base);
  Reverse(form.limit);
  Reverse(form.threshold);
  Reverse(form.rise);
  Reverse(form.fraction);
  return true;
}

}  // namespace ZrConvertersLib
