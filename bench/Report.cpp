#include "Report.h"

#include <ZrConvertersLib/Format.h>

#include <algorithm>
#include <cstdio>
#include <ostream>

#include "Aims.h"
#include "Statistics.h"

namespace Bench {
namespace {

constexpr std::size_t kWorst = 10;

std::string Number(double value, const char* format = "%.2f") {
  char text[32];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

using Cells = std::vector<std::string>;

void WriteRow(std::ostream& out, const Cells& cells) {
  for (const std::string& cell : cells) out << "| " << cell << ' ';
  out << "|\n";
}

/// The first column holds words, the others figures.
void WriteHeader(std::ostream& out, const Cells& cells) {
  WriteRow(out, cells);
  out << "|---";
  for (std::size_t i = 1; i < cells.size(); ++i) out << "|--:";
  out << "|\n";
}

Cells PlaceNames(Cells cells, const Run& run) {
  for (const Place& place : run.places) cells.push_back(place.Name());
  return cells;
}

/// A row of means, a column for each size.
struct Group {
  std::string name;
  Selector selected;
};

bool IsPlain(const Measurement& m) {
  return !m.what.filtered && m.what.order == BitOrder::Named;
}

std::vector<Group> FamiliesOf(const Run& run) {
  std::vector<Group> groups;
  for (const Measurement& m : run.measurements) {
    const std::string_view family = m.what.Family();
    const bool known =
        std::any_of(groups.begin(), groups.end(), [&](const Group& group) { return group.name == family; });
    if (known) continue;
    groups.push_back({std::string(family), [family](const Measurement& other) {
                        return other.what.Family() == family && IsPlain(other) &&
                               other.what.demosaic != Demosaic::Interpolate;
                      }});
  }
  return groups;
}

std::vector<Group> GroupsOf(const Run& run) {
  const auto plain = [](bool (*selected)(const Measurement& m)) -> Selector {
    return [selected](const Measurement& m) { return IsPlain(m) && selected(m); };
  };
  std::vector<Group> groups{{"All, fast demosaic", plain([](const Measurement& m) {
                               return m.what.demosaic != Demosaic::Interpolate;
                             })}};
  for (const Group& family : FamiliesOf(run)) groups.push_back(family);
  groups.push_back({"Samples moved or shifted",
                    plain([](const Measurement& m) { return m.what.GetKind() == Kind::Moves; })});
  groups.push_back({"Interpolating demosaic",
                    plain([](const Measurement& m) { return m.what.demosaic == Demosaic::Interpolate; })});
  groups.push_back({"Chains", plain([](const Measurement& m) { return m.what.IsChain(); })});
  groups.push_back({"Other orders of bits", [](const Measurement& m) {
                      return m.what.order != BitOrder::Named && !m.what.filtered;
                    }});
  groups.push_back({"Filter with three tables, fast demosaic", [](const Measurement& m) {
                      return m.what.filtered && m.what.demosaic != Demosaic::Interpolate;
                    }});
  groups.push_back({"Filter with three tables, interpolating", [](const Measurement& m) {
                      return m.what.filtered && m.what.demosaic == Demosaic::Interpolate;
                    }});
  return groups;
}

Selector At(const Selector& selected, const Place& place) {
  return [=](const Measurement& m) { return m.place == place && selected(m); };
}

void WriteMeans(std::ostream& out, const Run& run) {
  out << "\nGeometric means of time / floor (worst of the group; mean of time / time of memcpy)\n\n";
  WriteHeader(out, PlaceNames({"Group", "Cases"}, run));
  for (const Group& group : GroupsOf(run)) {
    const std::size_t count = Summarise(run.measurements, At(group.selected, run.places.front())).count;
    if (count == 0) continue;
    Cells cells{group.name, std::to_string(count)};
    for (const Place& place : run.places) {
      const Summary summary = Summarise(run.measurements, At(group.selected, place));
      cells.push_back(Number(summary.geometricMean) + " (" + Number(summary.worst) + "; " +
                      Number(summary.copyMean) + ")");
    }
    WriteRow(out, cells);
  }
}

void WriteWorst(std::ostream& out, const Run& run, const Place& place, bool filtered) {
  std::vector<const Measurement*> found;
  for (const Measurement& m : run.measurements)
    if (m.rounds > 0 && m.place == place && m.what.filtered == filtered) found.push_back(&m);
  if (found.empty()) return;
  const std::size_t count = std::min(kWorst, found.size());
  std::partial_sort(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(count), found.end(),
                    [](const auto* a, const auto* b) { return a->Ratio() > b->Ratio(); });
  out << "\nThe worst at " << place.Name() << (filtered ? ", with a filter" : "") << "\n\n";
  WriteHeader(out, {"Pair", "Time / floor", "Time / memcpy", "Time in us", "GB/s"});
  for (std::size_t i = 0; i < count; ++i)
    WriteRow(out,
             {found[i]->what.Name(), Number(found[i]->Ratio()), Number(found[i]->CopyRatio()),
              Number(found[i]->seconds * 1e6, "%.4g"), Number(found[i]->BytesPerSecond() * 1e-9, "%.1f")});
}

void WriteAims(std::ostream& out, const Run& run) {
  const std::vector<Aim> aims = AimsOf(run.level, run.measurements);
  if (aims.empty()) return;
  out << "\nAims\n\n";
  WriteHeader(out, {"What", "Frames", "At most", "Is", "Reached", "Cases above", "Worst"});
  for (const Aim& aim : aims)
    WriteRow(out, {aim.text, aim.place, Number(aim.limit), Number(aim.reached), aim.IsMet() ? "yes" : "NO",
                   std::to_string(aim.above) + " of " + std::to_string(aim.count), aim.worstName});
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

const char* NameOf(Demosaic demosaic) {
  return demosaic == Demosaic::None ? "" : demosaic == Demosaic::Fast ? "fast" : "interpolate";
}

const char* NameOf(Kind kind) {
  switch (kind) {
    case Kind::Moves:
      return "moves";
    case Kind::Fast:
      return "fast";
    case Kind::Interpolate:
      return "interpolate";
    case Kind::Matrix:
      return "matrix";
  }
  return "";
}

const char* NameOf(BitOrder order) {
  return order == BitOrder::Named ? "" : order == BitOrder::Csi2 ? "CSI-2" : "GigE Vision";
}

/// What was not measured is null in JSON and a word in CSV.
std::string Seconds(double seconds) {
  return seconds < Measurement::kUnmeasured ? Number(seconds, "%.4g") : "null";
}

/// The columns of a measurement and their values; words come quoted.
std::vector<std::pair<const char*, std::string>> Fields(const Measurement& m) {
  return {{"source", Quoted(m.what.source->name)},
          {"destination", Quoted(m.what.destination->name)},
          {"family", Quoted(m.what.Family())},
          {"kind", Quoted(NameOf(m.what.GetKind()))},
          {"demosaic", Quoted(NameOf(m.what.demosaic))},
          {"bitOrder", Quoted(NameOf(m.what.order))},
          {"filtered", m.what.filtered ? "true" : "false"},
          {"chain", m.what.IsChain() ? "true" : "false"},
          {"width", std::to_string(m.place.size.width)},
          {"height", std::to_string(m.place.size.height)},
          {"fromMemory", m.place.fromMemory ? "true" : "false"},
          {"bytes", std::to_string(m.bytes)},
          {"seconds", Seconds(m.seconds)},
          {"ordinaryFloorSeconds", Seconds(m.ordinaryFloor)},
          {"streamingFloorSeconds", Seconds(m.streamingFloor)},
          {"copySeconds", Seconds(m.copySeconds)},
          {"fixedSeconds", m.TellsFixedCost() ? Seconds(m.FixedSeconds()) : "null"},
          {"ratio", Number(m.Ratio(), "%.3f")},
          {"copyRatio", Number(m.CopyRatio(), "%.3f")},
          {"rounds", std::to_string(m.rounds)}};
}

std::vector<std::pair<const char*, std::string>> Fields(const Aim& aim) {
  return {{"what", Quoted(aim.text)},           {"frames", Quoted(aim.place)},
          {"limit", Number(aim.limit)},         {"reached", Number(aim.reached)},
          {"above", std::to_string(aim.above)}, {"count", std::to_string(aim.count)},
          {"worst", Quoted(aim.worstName)}};
}

}  // namespace

void WriteSummary(std::ostream& out, const Run& run) {
  WriteHeader(out, {"Run", ""});
  for (const auto& [name, value] : run.facts) WriteRow(out, {name, value});
  WriteMeans(out, run);
  for (const bool filtered : {false, true})
    for (const Place& place : run.places) WriteWorst(out, run, place, filtered);
  WriteAims(out, run);
}

void WriteTable(std::ostream& out, const Run& run) {
  Cells names{"Pair: time / floor (memcpy)"};
  names = PlaceNames(names, run);
  names.push_back("ns beside the pixels");
  WriteHeader(out, names);
  const std::size_t cases = run.measurements.size() / std::max<std::size_t>(1, run.places.size());
  for (std::size_t i = 0; i < cases; ++i) {
    Cells cells{run.measurements[i].what.Name()};
    std::string fixed;
    for (std::size_t p = 0; p < run.places.size(); ++p) {
      const Measurement& m = run.measurements[p * cases + i];
      cells.push_back(m.rounds > 0 ? Number(m.Ratio()) + " (" + Number(m.CopyRatio()) + ")" : "");
      if (m.rounds > 0 && m.TellsFixedCost()) fixed = Number(m.FixedSeconds() * 1e9, "%.0f");
    }
    cells.push_back(fixed);
    WriteRow(out, cells);
  }
}

void WriteCsv(std::ostream& out, const Run& run) {
  bool first = true;
  for (const Measurement& m : run.measurements) {
    if (m.rounds == 0) continue;
    const auto fields = Fields(m);
    const auto line = [&](auto value) {
      for (std::size_t i = 0; i < fields.size(); ++i) out << (i == 0 ? "" : ",") << value(fields[i]);
      out << '\n';
    };
    if (first) line([](const auto& field) { return std::string(field.first); });
    first = false;
    line([](const auto& field) { return field.second; });
  }
}

void WriteJson(std::ostream& out, const Run& run) {
  const auto object = [&](const auto& fields, const auto& value) {
    const char* separator = "{";
    for (const auto& field : fields) {
      out << separator << Quoted(field.first) << ": " << value(field.second);
      separator = ", ";
    }
    out << '}';
  };
  out << "{\n\"run\": ";
  object(run.facts, [](const std::string& text) { return Quoted(text); });
  out << ",\n\"aims\": [";
  const char* separator = "\n";
  for (const Aim& aim : AimsOf(run.level, run.measurements)) {
    out << separator;
    object(Fields(aim), [](const std::string& value) { return value; });
    separator = ",\n";
  }
  out << "\n],\n\"measurements\": [";
  separator = "\n";
  for (const Measurement& m : run.measurements) {
    if (m.rounds == 0) continue;
    out << separator;
    object(Fields(m), [](const std::string& value) { return value; });
    separator = ",\n";
  }
  out << "\n]\n}\n";
}

}  // namespace Bench
