#include "FormatsJson.h"

#include <ZrConvertersLib/Format.h>
#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/FrameConverter.h>
#include <ZrConvertersLib/V4l2Formats.h>

#include <cstdio>
#include <string_view>

#include "FormatNames.h"

namespace zrconvert {
namespace {

namespace zr = ZrConvertersLib;

// The texts are ASCII without control characters.
std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

std::string Member(const std::string& name, const std::string& value) {
  return Quoted(name) + ": " + value;
}

std::string Truth(bool value) {
  return value ? "true" : "false";
}

std::string Packing(unsigned flags) {
  return Member("packing", Quoted(PackingName(PackingOfFlags(flags))));
}

void Append(std::string& objects, const std::string& members) {
  objects += (objects.empty() ? "{" : ", {") + members + "}";
}

std::string CodesOf(const zr::FormatInfo& format) {
  std::string codes;
  for (const zr::FormatCode& code : zr::FormatCodes()) {
    if (code.id != format.id) continue;
    Append(codes, Member("name", Quoted(code.name)) + ", " + Member("code", Quoted(CodeText(code.code))) +
                      ", " + Packing(code.flags));
  }
  return "[" + codes + "]";
}

std::string V4l2NamesOf(const zr::FormatInfo& format) {
  std::string names;
  for (const zr::V4l2Format& one : zr::V4l2Formats()) {
    if (one.id != format.id) continue;
    Append(names, Member("name", Quoted(one.name)) + ", " + Member("fourcc", Quoted(FourccText(one.fourcc))) +
                      ", " + Packing(one.flags));
  }
  return "[" + names + "]";
}

// The orders that --packing takes for the format.
std::string PackingsOf(const zr::FormatInfo& format) {
  std::string packings;
  for (const auto order : {zr::PackingOrder::Type, zr::PackingOrder::GigEVision, zr::PackingOrder::Csi2}) {
    const std::string_view layout = zr::PackingLayout(format.id, order);
    if (layout.empty()) continue;
    Append(packings, Member("packing", Quoted(PackingName(order))) + ", " + Member("layout", Quoted(layout)));
  }
  return "[" + packings + "]";
}

std::string ObjectOf(const zr::FormatInfo& format) {
  return "{" + Member("name", Quoted(format.name)) + ", " + Member("id", std::to_string(format.id)) + ", " +
         Member("family", Quoted(zr::FamilyName(format.family))) + ", " +
         Member("bitsPerPixel", std::to_string(format.bitsPerPixel)) + ", " +
         Member("depth", std::to_string(format.depth)) + ", " +
         Member("planes", std::to_string(format.planes)) + ", " +
         Member("groupPixels", std::to_string(format.groupPixels)) + ", " +
         Member("groupBytes", std::to_string(format.groupBytes)) + ", " +
         Member("widthMultiple", std::to_string(format.widthMultiple)) + ", " +
         Member("isSource", Truth(format.isSource)) + ", " +
         Member("isDestination", Truth(format.isDestination)) + ", " +
         Member("layout", Quoted(format.layout)) + ", " + Member("packings", PackingsOf(format)) + ", " +
         Member("pfnc", CodesOf(format)) + ", " + Member("v4l2", V4l2NamesOf(format)) + "}";
}

}  // namespace

void PrintFormatsAsJson() {
  const char* separator = "[";
  for (const zr::FormatInfo& format : zr::Formats()) {
    std::printf("%s\n%s", separator, ObjectOf(format).c_str());
    separator = ",";
  }
  std::puts("\n]");
}

std::string CodeText(std::uint32_t code) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(code));
  return text;
}

}  // namespace zrconvert
