#include "Options.h"

#include <ZrConvertersLib/RGBFilter.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <array>
#include <string>

#include "common/Refusal.h"
#include "common/Words.h"

namespace zrpython {

namespace py = pybind11;
namespace zr = ZrConvertersLib;
using zrcommon::Conversion;

namespace {

template <typename Value>
Value Cast(const char* keyword, py::handle value) {
  try {
    return value.cast<Value>();
  } catch (const py::cast_error&) {
    throw py::type_error(std::string(keyword) + ": " + py::repr(value).cast<std::string>() + " does not fit");
  }
}

zr::Region RegionOf(py::handle value) {
  const auto [x, y, width, height] = Cast<std::array<std::uint32_t, 4>>("region", value);
  return {x, y, width, height};
}

// Asked for by the first of its keywords.
zr::Development& DevelopmentOf(Conversion& conversion) {
  if (!conversion.development) conversion.development.emplace();
  return *conversion.development;
}

// A word, or the points of a curve.
void ReadCurve(const char* name, py::handle value, Conversion& conversion) {
  zr::Development& development = DevelopmentOf(conversion);
  if (py::isinstance<py::str>(value)) {
    development.curve = zrcommon::ValueOf(zrcommon::kCurves, name, Cast<std::string>(name, value));
    return;
  }
  development.curve = zr::ToneCurve::Points;
  for (const auto& [input, output] : Cast<std::vector<std::array<double, 2>>>(name, value))
    conversion.points.push_back({input, output});
}

struct Keyword {
  const char* name;
  void (*read)(const char* name, py::handle value, Conversion& conversion);
};

constexpr std::array kKeywords{
    Keyword{"pattern",
            [](const char* name, py::handle value, Conversion& conversion) {
              conversion.options.pattern = zrcommon::PatternOf(Cast<std::string>(name, value));
            }},
    Keyword{"demosaic",
            [](const char* name, py::handle value, Conversion& conversion) {
              conversion.options.demosaic =
                  zrcommon::ValueOf(zrcommon::kDemosaics, name, Cast<std::string>(name, value));
            }},
    Keyword{"matrix",
            [](const char* name, py::handle value, Conversion& conversion) {
              conversion.options.matrix =
                  zrcommon::ValueOf(zrcommon::kMatrices, name, Cast<std::string>(name, value));
            }},
    Keyword{"packing",
            [](const char* name, py::handle value, Conversion& conversion) {
              conversion.options.packing =
                  zrcommon::ValueOf(zrcommon::kPackings, name, Cast<std::string>(name, value));
            }},
    Keyword{"black",
            [](const char* name, py::handle value, Conversion& conversion) {
              DevelopmentOf(conversion).black = ChannelsOf(name, value);
            }},
    Keyword{"white",
            [](const char* name, py::handle value, Conversion& conversion) {
              DevelopmentOf(conversion).white = Cast<double>(name, value);
            }},
    Keyword{"gain", [](const char* name, py::handle value,
                       Conversion& conversion) { DevelopmentOf(conversion).gain = ChannelsOf(name, value); }},
    Keyword{"color_matrix",
            [](const char* name, py::handle value, Conversion& conversion) {
              const auto rows = Cast<std::array<std::array<double, 3>, 3>>(name, value);
              for (std::size_t i = 0; i < 9; ++i) DevelopmentOf(conversion).matrix[i] = rows[i / 3][i % 3];
            }},
    Keyword{"curve", &ReadCurve},
    Keyword{"gamma",
            [](const char* name, py::handle value, Conversion& conversion) {
              DevelopmentOf(conversion).curve = zr::ToneCurve::Gamma;
              DevelopmentOf(conversion).gamma = Cast<double>(name, value);
            }},
    Keyword{"filter",
            [](const char* name, py::handle value, Conversion& conversion) {
              conversion.options.filter = Cast<const zr::RGBFilter*>(name, value);
            }},
    Keyword{"full_depth",
            [](const char* name, py::handle value, Conversion& conversion) {
              conversion.options.fullDepth = Cast<bool>(name, value);
            }},
    Keyword{"flip_vertical",
            [](const char* name, py::handle value, Conversion& conversion) {
              conversion.options.flipVertical = Cast<bool>(name, value);
            }},
    Keyword{"flip_horizontal",
            [](const char* name, py::handle value, Conversion& conversion) {
              conversion.options.flipHorizontal = Cast<bool>(name, value);
            }},
    Keyword{"region", [](const char*, py::handle value,
                         Conversion& conversion) { conversion.options.region = RegionOf(value); }},
    Keyword{"threads", [](const char* name, py::handle value,
                          Conversion& conversion) { conversion.threads = Cast<unsigned>(name, value); }},
};

}  // namespace

zr::ToneSettings::Channels ChannelsOf(const char* name, py::handle value) {
  if (!PySequence_Check(value.ptr())) {
    const auto all = Cast<double>(name, value);
    return {all, all, all};
  }
  const auto [red, green, blue] = Cast<std::array<double, 3>>(name, value);
  return {red, green, blue};
}

zr::FormatChoice FormatOf(py::handle word) {
  if (py::isinstance<zr::FormatInfo>(word)) return {word.cast<const zr::FormatInfo&>().id, 0, false};
  if (!py::isinstance<py::str>(word) && !py::isinstance<py::int_>(word))
    throw py::type_error("a format is a name, a code or a Format, not " + py::repr(word).cast<std::string>());
  zr::FormatChoice choice;
  const auto text = py::str(word).cast<std::string>();
  zrcommon::Require(zr::ReadFormat(text, choice), "'" + text + "'");
  return choice;
}

const zr::FormatInfo& InfoOf(long id) {
  return *zr::FindFormatInfo(id);
}

void ReadOptions(const zr::FormatChoice& settled, const py::dict& keywords, Conversion& conversion) {
  conversion.options.SetFlags(settled.flags);
  for (const auto& [key, value] : keywords) {
    const auto name = key.cast<std::string>();
    const auto* found = std::ranges::find(kKeywords, name, &Keyword::name);
    if (found == kKeywords.end()) throw py::type_error("there is no option '" + name + "'");
    if (!value.is_none()) found->read(found->name, value, conversion);
  }
  zrcommon::RefuseContradiction(settled, conversion.options);
}

}  // namespace zrpython
