// What the page's worker calls. Texts stay valid until the next call that gives one.
#include <ZrConvertersLib/CpuLevel.h>
#include <ZrConvertersLib/Development.h>
#include <ZrConvertersLib/FrameErrors.h>

#include "Facts.h"
#include "Frame.h"
#include "Probe.h"
#include "Smoothness.h"

#define ZR_PAGE_EXPORT(name) extern "C" __attribute__((export_name(#name)))

namespace {

namespace zr = ZrConvertersLib;

page::Frame& TheFrame() {
  static page::Frame frame;
  return frame;
}

const char* Kept(std::string text) {
  static std::string kept;
  kept = std::move(text);
  return kept.c_str();
}

// Levels, gains and curve of the next conversions, if they ask for anything.
struct Tone {
  zr::Development development;
  bool isWanted = false;
};

Tone& TheTone() {
  static Tone tone;
  return tone;
}

}  // namespace

ZR_PAGE_EXPORT(level) const char* Level() {
  return zr::GetCpuLevel();
}

ZR_PAGE_EXPORT(formats) const char* Formats() {
  return Kept(page::FormatsAsJson());
}

// JavaScript's numbers hold whole numbers up to 2^53.
ZR_PAGE_EXPORT(guesses) const char* Guesses(double bytes) {
  return Kept(page::GuessesAsJson(static_cast<std::uint64_t>(bytes)));
}

ZR_PAGE_EXPORT(layout)
const char* Layout(long format, std::uint32_t width, std::uint32_t height, std::uint32_t stride) {
  return Kept(page::LayoutAsJson(format, width, height, stride));
}

ZR_PAGE_EXPORT(reserve) std::uint8_t* Reserve(std::size_t bytes) {
  return TheFrame().Reserve(bytes);
}

ZR_PAGE_EXPORT(roughness)
double Roughness(long format, std::uint32_t width, std::uint32_t height, std::uint32_t stride) {
  return page::Roughness({format, width, height, stride}, TheFrame().Bytes());
}

ZR_PAGE_EXPORT(pattern)
unsigned Pattern(long format, std::uint32_t width, std::uint32_t height, std::uint32_t stride) {
  return static_cast<unsigned>(page::PatternByGreens({format, width, height, stride}, TheFrame().Bytes()));
}

// For the next conversions. Levels are in counts of the source's samples; white 0 is the largest.
ZR_PAGE_EXPORT(setTone)
void SetTone(double black, double white, double gamma, double red, double green, double blue) {
  zr::Development development;
  development.black = {black, black, black};
  development.white = white;
  development.gain = {red, green, blue};
  if (gamma != 1) {
    development.curve = zr::ToneCurve::Gamma;
    development.gamma = gamma;
  }
  const bool isWanted = black != 0 || white != 0 || gamma != 1 || red != 1 || green != 1 || blue != 1;
  TheTone() = {development, isWanted};
}

// Levels and gains that the frame asks for.
ZR_PAGE_EXPORT(automaticTone)
const char* AutomaticTone(long format, std::uint32_t width, std::uint32_t height, std::uint32_t stride,
                          unsigned pattern, unsigned matrix, unsigned packing) {
  zr::MeasureOptions options;
  options.pattern = static_cast<zr::MosaicPattern>(pattern);
  options.matrix = static_cast<zr::ColourMatrix>(matrix);
  options.packing = static_cast<zr::PackingOrder>(packing);
  return Kept(page::AutomaticToneAsJson({format, width, height, stride}, options, TheFrame()));
}

ZR_PAGE_EXPORT(convert)
std::uint32_t Convert(long format, std::uint32_t width, std::uint32_t height, std::uint32_t stride,
                      unsigned pattern, unsigned demosaic, unsigned matrix, unsigned packing) {
  zr::FrameOptions options;
  options.pattern = static_cast<zr::MosaicPattern>(pattern);
  options.demosaic = static_cast<zr::Demosaic>(demosaic);
  options.matrix = static_cast<zr::ColourMatrix>(matrix);
  options.packing = static_cast<zr::PackingOrder>(packing);
  options.development = TheTone().isWanted ? &TheTone().development : nullptr;
  options.fullDepth = TheTone().isWanted;
  return TheFrame().Convert({format, width, height, stride}, options).GetCode();
}

ZR_PAGE_EXPORT(picture) const std::uint8_t* Picture() {
  return TheFrame().Picture();
}

ZR_PAGE_EXPORT(histogram) const std::uint32_t* Counts() {
  static page::Histogram counts;
  counts = TheFrame().Count();
  return counts.data();
}

ZR_PAGE_EXPORT(probe) const char* Probe(std::uint32_t x, std::uint32_t y) {
  return Kept(page::ProbeAsJson(TheFrame(), x, y));
}

ZR_PAGE_EXPORT(resultText) const char* ResultText(std::uint32_t code) {
  return Kept(std::string(zr::ResultText(code)));
}
