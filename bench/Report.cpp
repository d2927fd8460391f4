#include "Report.h"

#include <ZrConvertersLib/Format.h>

#include <algorithm>
#include <cstdio>
#include <ostream>

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

Cells SizeNames(Cells cells, const Run& run) {
  for (const Size& size : run.sizes) cells.push_back(size.Name());
  return cells;
}

bool IsOf(const Measurement& m, const Size& size) {
  return m.size.width == size.width && m.size.height == size.height;
}

/// A row of means, a column for each size.
struct Group {
  std::string name;
  Selector selected;
};

std::vector<Group> GroupsOf(const Run& run) {
  std::vector<Group> groups{{"All, without a filter", [](const Measurement& m) { return !m.what.filtered; }}};
  for (const Measurement& m : run.measurements) {
    const std::string_view family = m.what.Family();
    const bool known =
        std::any_of(groups.begin(), groups.end(), [&](const Group& group) { return group.name == family; });
    if (known) continue;
    groups.push_back({std::string(family), [family](const Measurement& other) {
                        return other.what.Family() == family && !other.what.filtered;
                      }});
  }
  const auto ofKind = [](Kind kind) {
    return [kind](const Measurement& m) { return m.what.GetKind() == kind && !m.what.filtered; };
  };
  groups.push_back({"Bayer, fast demosaic", ofKind(Kind::Fast)});
  groups.push_back({"Bayer, interpolating demosaic", ofKind(Kind::Interpolate)});
  groups.push_back({"Chains", [](const Measurement& m) { return m.what.IsChain() && !m.what.filtered; }});
  groups.push_back({"All, with a filter", [](const Measurement& m) { return m.what.filtered; }});
  return groups;
}

Selector At(const Selector& selected, const Size& size) {
  return [=](const Measurement& m) { return IsOf(m, size) && selected(m); };
}

void WriteMeans(std::ostream& out, const Run& run) {
  out << "\nGeometric means of time / time of memcpy (worst of the group)\n\n";
  WriteHeader(out, SizeNames({"Group", "Cases"}, run));
  for (const Group& group : GroupsOf(run)) {
    const std::size_t count =
        run.sizes.empty() ? 0 : Summarise(run.measurements, At(group.selected, run.sizes.front())).count;
    if (count == 0) continue;
    Cells cells{group.name, std::to_string(count)};
    for (const Size& size : run.sizes) {
      const Summary summary = Summarise(run.measurements, At(group.selected, size));
      cells.push_back(Number(summary.geometricMean) + " (" + Number(summary.worst) + ")");
    }
    WriteRow(out, cells);
  }
}

void WriteWorst(std::ostream& out, const Run& run, const Size& size, bool filtered) {
  std::vector<const Measurement*> found;
  for (const Measurement& m : run.measurements)
    if (m.rounds > 0 && IsOf(m, size) && m.what.filtered == filtered) found.push_back(&m);
  if (found.empty()) return;
  const std::size_t count = std::min(kWorst, found.size());
  std::partial_sort(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(count), found.end(),
                    [](const auto* a, const auto* b) { return a->Ratio() > b->Ratio(); });
  out << "\nThe worst at " << size.Name() << (filtered ? ", with a filter" : "") << "\n\n";
  WriteHeader(out, {"Pair", "Ratio", "Time in us", "GB/s"});
  for (std::size_t i = 0; i < count; ++i)
    WriteRow(out, {found[i]->what.Name(), Number(found[i]->Ratio()), Number(found[i]->seconds * 1e6, "%.4g"),
                   Number(found[i]->BytesPerSecond() * 1e-9, "%.1f")});
}

void WriteAims(std::ostream& out, const Run& run) {
  out << "\nAims\n\n";
  WriteHeader(out, {"What", "At most", "Reached", "Met", "Cases above"});
  for (const Aim& aim : Aims(run.allowance)) {
    const Summary all = Summarise(run.measurements, aim.selected);
    if (all.count == 0) continue;
    const Summary above = Summarise(
        run.measurements, [&](const Measurement& m) { return aim.selected(m) && m.Ratio() > aim.limit; });
    const double reached = aim.isMean ? all.geometricMean : all.worst;
    WriteRow(out, {aim.text, Number(aim.limit), Number(reached), reached <= aim.limit ? "yes" : "NO",
                   aim.isMean ? "" : std::to_string(above.count) + " of " + std::to_string(all.count)});
  }
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

/// The columns of a measurement and their values; words come quoted.
std::vector<std::pair<const char*, std::string>> Fields(const Measurement& m) {
  return {{"source", Quoted(m.what.source->name)},
          {"destination", Quoted(m.what.destination->name)},
          {"family", Quoted(m.what.Family())},
          {"kind", Quoted(NameOf(m.what.GetKind()))},
          {"demosaic", Quoted(NameOf(m.what.demosaic))},
          {"filtered", m.what.filtered ? "true" : "false"},
          {"chain", m.what.IsChain() ? "true" : "false"},
          {"width", std::to_string(m.size.width)},
          {"height", std::to_string(m.size.height)},
          {"bytes", std::to_string(m.bytes)},
          {"seconds", Number(m.seconds, "%.4g")},
          {"copySeconds", Number(m.copySeconds, "%.4g")},
          {"ratio", Number(m.Ratio(), "%.3f")},
          {"rounds", std::to_string(m.rounds)}};
}

}  // namespace

void WriteSummary(std::ostream& out, const Run& run) {
  WriteHeader(out, {"Run", ""});
  for (const auto& [name, value] : run.facts) WriteRow(out, {name, value});
  WriteMeans(out, run);
  for (const bool filtered : {false, true})
    for (const Size& size : run.sizes) WriteWorst(out, run, size, filtered);
  WriteAims(out, run);
}

void WriteTable(std::ostream& out, const Run& run) {
  WriteHeader(out, SizeNames({"Pair"}, run));
  const std::size_t cases = run.measurements.size() / std::max<std::size_t>(1, run.sizes.size());
  for (std::size_t i = 0; i < cases; ++i) {
    Cells cells{run.measurements[i].what.Name()};
    for (std::size_t s = 0; s < run.sizes.size(); ++s) {
      const Measurement& m = run.measurements[s * cases + i];
      cells.push_back(m.rounds > 0 ? Number(m.Ratio()) : "");
    }
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
  out << ",\n\"measurements\": [";
  const char* separator = "\n";
  for (const Measurement& m : run.measurements) {
    if (m.rounds == 0) continue;
    out << separator;
    object(Fields(m), [](const std::string& value) { return value; });
    separator = ",\n";
  }
  out << "\n]\n}\n";
}

}  // namespace Bench
