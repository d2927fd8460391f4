#include "Properties.h"

#include <gst/gst.h>

#include <vector>

#include "common/Words.h"

namespace zrgstreamer {

namespace zr = ZrConvertersLib;

namespace {

enum Id : guint {
  kSourceFormat = 1,
  kWidth,
  kHeight,
  kStride,
  kPattern,
  kDemosaic,
  kMatrix,
  kPacking,
  kBlack,
  kWhite,
  kRedGain,
  kGreenGain,
  kBlueGain,
  kCurve,
  kGamma,
  kColorMatrix,
  kCurvePoints,
  kFlipHorizontal,
  kFlipVertical,
  kAutomatic,
  kThreads
};

constexpr gint kAuto = -1;

// An enumeration type of words that live as long as the program. GLib keeps the array for ever.
GType EnumType(const char* name, std::vector<GEnumValue> values) {
  static auto& kept = *new std::vector<std::vector<GEnumValue>>;
  values.push_back({0, nullptr, nullptr});
  kept.push_back(std::move(values));
  return g_enum_register_static(name, kept.back().data());
}

template <typename Value, std::size_t kCount>
std::vector<GEnumValue> ValuesOf(const std::array<zrcommon::Word<Value>, kCount>& words) {
  std::vector<GEnumValue> values;
  values.reserve(kCount + 1);  // the list ends with a value of zeros
  for (const auto& word : words) values.push_back({static_cast<gint>(word.value), word.meaning, word.text});
  return values;
}

GType DemosaicType() {
  static const GType type = EnumType("ZrConvertDemosaic", ValuesOf(zrcommon::kDemosaics));
  return type;
}

GType CurveType() {
  static const GType type = EnumType("ZrConvertCurve", ValuesOf(zrcommon::kCurves));
  return type;
}

GType MatrixType() {
  static const GType type = [] {
    auto values = ValuesOf(zrcommon::kMatrices);
    values.insert(values.begin(), {kAuto, "As caps or source-format say", "auto"});
    return EnumType("ZrConvertMatrix", values);
  }();
  return type;
}

GType PackingType() {
  static const GType type = [] {
    auto values = ValuesOf(zrcommon::kPackings);
    values.insert(values.begin(), {kAuto, "As source-format says", "auto"});
    return EnumType("ZrConvertPacking", values);
  }();
  return type;
}

GType PatternType() {
  static const GType type = [] {
    std::vector<GEnumValue> values{{kAuto, "As caps or source-format say", "auto"}};
    for (const std::string_view name : zrcommon::PatternNames()) {
      const char* text = g_intern_string(std::string(name).c_str());
      values.push_back({static_cast<gint>(values.size()) - 1, text, text});
    }
    return EnumType("ZrConvertPattern", values);
  }();
  return type;
}

GParamFlags Flags(bool live) {
  return static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS |
                                  (live ? GST_PARAM_MUTABLE_PLAYING : GST_PARAM_MUTABLE_READY));
}

void InstallNumber(GObjectClass* object, Id id, const char* name, const char* text, guint most,
                   guint otherwise) {
  g_object_class_install_property(object, id,
                                  g_param_spec_uint(name, name, text, 0, most, otherwise, Flags(IsLive(id))));
}

void InstallFactor(GObjectClass* object, Id id, const char* name, const char* text, double otherwise) {
  g_object_class_install_property(
      object, id, g_param_spec_double(name, name, text, 0.0, G_MAXUINT32, otherwise, Flags(true)));
}

// The number that an id stands for; null for the others.
double* FactorOf(Settings& settings, guint id) {
  switch (id) {
    case kBlack:
      return &settings.black;
    case kWhite:
      return &settings.white;
    case kRedGain:
      return &settings.redGain;
    case kGreenGain:
      return &settings.greenGain;
    case kBlueGain:
      return &settings.blueGain;
    case kGamma:
      return &settings.gamma;
    default:
      return nullptr;
  }
}

// The list of numbers that an id stands for; null for the others.
std::vector<double>* ListOf(Settings& settings, guint id) {
  if (id == kColorMatrix) return &settings.colorMatrix;
  return id == kCurvePoints ? &settings.curvePoints : nullptr;
}

void InstallList(GObjectClass* object, Id id, const char* name, const char* text) {
  GParamSpec* number = g_param_spec_double("number", "number", "One of the numbers", -G_MAXDOUBLE,
                                           G_MAXDOUBLE, 0.0, Flags(true));
  g_object_class_install_property(object, id, gst_param_spec_array(name, name, text, number, Flags(true)));
}

std::vector<double> ListOf(const GValue* array) {
  std::vector<double> numbers(gst_value_array_get_size(array));
  for (guint i = 0; i < numbers.size(); ++i)
    numbers[i] = g_value_get_double(gst_value_array_get_value(array, i));
  return numbers;
}

void SetList(GValue* array, const std::vector<double>& numbers) {
  for (const double number : numbers) {
    GValue value = G_VALUE_INIT;
    g_value_init(&value, G_TYPE_DOUBLE);
    g_value_set_double(&value, number);
    gst_value_array_append_and_take_value(array, &value);
  }
}

// The switch that an id stands for; null for the others.
bool* SwitchOf(Settings& settings, guint id) {
  switch (id) {
    case kFlipHorizontal:
      return &settings.flipHorizontal;
    case kFlipVertical:
      return &settings.flipVertical;
    case kAutomatic:
      return &settings.automatic;
    default:
      return nullptr;
  }
}

void InstallSwitch(GObjectClass* object, Id id, const char* name, const char* text) {
  g_object_class_install_property(object, id, g_param_spec_boolean(name, name, text, FALSE, Flags(true)));
}

void InstallChoice(GObjectClass* object, Id id, const char* name, const char* text, GType type,
                   gint otherwise) {
  g_object_class_install_property(object, id,
                                  g_param_spec_enum(name, name, text, type, otherwise, Flags(true)));
}

template <typename Value>
std::optional<Value> Choice(const GValue* value) {
  const gint number = g_value_get_enum(value);
  if (number == kAuto) return std::nullopt;
  return static_cast<Value>(number);
}

template <typename Value>
gint Number(const std::optional<Value>& choice) {
  return choice ? static_cast<gint>(*choice) : kAuto;
}

}  // namespace

void InstallProperties(GObjectClass* object) {
  g_object_class_install_property(
      object, kSourceFormat,
      g_param_spec_string(
          "source-format", "source-format",
          "Format of the frames whatever their caps say: a name or code that the library knows, "
          "BayerRG12p for instance",
          nullptr, Flags(false)));
  InstallNumber(object, kWidth, "width", "Pixels per line of frames whose caps have no width", G_MAXINT, 0);
  InstallNumber(object, kHeight, "height", "Lines of frames whose caps have no height", G_MAXINT, 0);
  InstallNumber(object, kStride, "source-stride",
                "Bytes from line to line of frames without GstVideoMeta (0: as caps or source-format say)",
                G_MAXINT, 0);
  InstallChoice(object, kPattern, "pattern", "How a mosaic begins", PatternType(), kAuto);
  InstallChoice(object, kDemosaic, "demosaic", "How a mosaic becomes colour", DemosaicType(), 0);
  InstallChoice(object, kMatrix, "matrix", "How YCbCr becomes colour", MatrixType(), kAuto);
  InstallChoice(object, kPacking, "packing", "Order of the low bits in packed samples", PackingType(), kAuto);
  InstallFactor(object, kBlack, "black", "Samples that become black, in counts of the source's samples", 0.0);
  InstallFactor(object, kWhite, "white", "Samples that become white (0: the largest that there are)", 0.0);
  InstallFactor(object, kRedGain, "red-gain", "Factor of red", 1.0);
  InstallFactor(object, kGreenGain, "green-gain", "Factor of green and grey", 1.0);
  InstallFactor(object, kBlueGain, "blue-gain", "Factor of blue", 1.0);
  InstallChoice(object, kCurve, "curve", "From linear light to what is shown", CurveType(), 0);
  InstallFactor(object, kGamma, "gamma", "Exponent of curve=gamma", 2.2);
  InstallList(object, kColorMatrix, "color-matrix",
              "What red, then green, then blue takes of the three after the gains: nine numbers");
  InstallList(object, kCurvePoints, "curve-points",
              "Input and output of each point of a curve, from 0 to 1, which replaces the property curve");
  InstallSwitch(object, kFlipHorizontal, "flip-horizontal", "Whether the last column comes first");
  InstallSwitch(object, kFlipVertical, "flip-vertical", "Whether the last line comes first");
  InstallSwitch(object, kAutomatic, "auto", "Levels, and gains of colour, from the first frame");
  InstallNumber(object, kThreads, "threads", "Threads that share each frame (0: one for each processor)",
                1024, 1);
}

bool WriteProperty(Settings& settings, guint id, const GValue* value) {
  if (double* factor = FactorOf(settings, id)) {
    *factor = g_value_get_double(value);
    return true;
  }
  if (std::vector<double>* list = ListOf(settings, id)) {
    *list = ListOf(value);
    return true;
  }
  if (bool* on = SwitchOf(settings, id)) {
    *on = g_value_get_boolean(value);
    return true;
  }
  switch (id) {
    case kSourceFormat: {
      const char* text = g_value_get_string(value);
      settings.sourceFormat = text ? text : "";
      return true;
    }
    case kWidth:
      settings.width = g_value_get_uint(value);
      return true;
    case kHeight:
      settings.height = g_value_get_uint(value);
      return true;
    case kStride:
      settings.stride = g_value_get_uint(value);
      return true;
    case kPattern:
      settings.pattern = Choice<zr::MosaicPattern>(value);
      return true;
    case kDemosaic:
      settings.demosaic = static_cast<zr::Demosaic>(g_value_get_enum(value));
      return true;
    case kMatrix:
      settings.matrix = Choice<zr::ColourMatrix>(value);
      return true;
    case kPacking:
      settings.packing = Choice<zr::PackingOrder>(value);
      return true;
    case kCurve:
      settings.curve = static_cast<zr::ToneCurve>(g_value_get_enum(value));
      return true;
    case kThreads:
      settings.threads = g_value_get_uint(value);
      return true;
    default:
      return false;
  }
}

bool ReadProperty(const Settings& settings, guint id, GValue* value) {
  Settings copy = settings;
  if (const double* factor = FactorOf(copy, id)) {
    g_value_set_double(value, *factor);
    return true;
  }
  if (const std::vector<double>* list = ListOf(copy, id)) {
    SetList(value, *list);
    return true;
  }
  if (const bool* on = SwitchOf(copy, id)) {
    g_value_set_boolean(value, *on);
    return true;
  }
  switch (id) {
    case kSourceFormat:
      g_value_set_string(value, settings.sourceFormat.empty() ? nullptr : settings.sourceFormat.c_str());
      return true;
    case kWidth:
      g_value_set_uint(value, settings.width);
      return true;
    case kHeight:
      g_value_set_uint(value, settings.height);
      return true;
    case kStride:
      g_value_set_uint(value, settings.stride);
      return true;
    case kPattern:
      g_value_set_enum(value, Number(settings.pattern));
      return true;
    case kDemosaic:
      g_value_set_enum(value, static_cast<gint>(settings.demosaic));
      return true;
    case kMatrix:
      g_value_set_enum(value, Number(settings.matrix));
      return true;
    case kPacking:
      g_value_set_enum(value, Number(settings.packing));
      return true;
    case kCurve:
      g_value_set_enum(value, static_cast<gint>(settings.curve));
      return true;
    case kThreads:
      g_value_set_uint(value, settings.threads);
      return true;
    default:
      return false;
  }
}

bool IsLive(guint id) {
  return id >= kPattern;
}

}  // namespace zrgstreamer
