// Writes the generated pages of docs: zrpages formats|converters FILE
#include <ZrConvertersLib/FormatCodes.h>
#include <ZrConvertersLib/PixelTypeFactory.h>
#include <ZrConvertersLib/V4l2Formats.h>
#include <core/FormatTable.h>
#include <core/PackingFlags.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "BitPicture.h"

namespace ZrConvertersLib::Pages {

namespace {

struct FamilyText {
  Family family;
  const char* title;
  const char* text;
};

constexpr FamilyText kFamilies[] = {
    {Family::Mono, "Mono", "One sample a pixel."},
    {Family::Bayer, "Bayer mosaics",
     "One sample a site; the four patterns GRBG, GBRG, RGGB and BGGR name the first 2 x 2 sites row by row "
     "and\n"
     "are chosen by flags, not by the format."},
    {Family::Rgb, "RGB and BGR", "The alpha channel of a source is read past."},
    {Family::YCbCr, "YCbCr",
     "4:4:4, 4:2:2 (two pixels share Cb and Cr) and 4:1:1 (four pixels do). The matrix is chosen by flags."},
    {Family::Scf1, "Sparse colour filter mosaics",
     "One sample a site; the patterns WGWR, WBWG, WRWG and WGWB are chosen by flags."},
    {Family::BiColor, "BiColor mosaics",
     "Two samples a pixel; the patterns RGBG, BGRG, GRGB and GBGR are chosen by flags."},
};

void ForEachRow(const std::function<void(const FormatRow&)>& action) {
  for (const FormatRow& row : kFormats) action(row);
  for (const FormatRow& row : kUntypedFormats) action(row);
}

std::vector<const FormatRow*> DestinationsOf(const FormatRow& source) {
  std::vector<const FormatRow*> found;
  ForEachRow([&](const FormatRow& row) {
    if (PixelTypeFactory::HasConverter(source.id, row.id)) found.push_back(&row);
  });
  return found;
}

std::string Hex(unsigned long value, int digits) {
  char text[24];
  std::snprintf(text, sizeof text, "0x%0*lX", digits, value);
  return text;
}

std::string Codes(const FormatRow& row) {
  std::string list;
  for (const FormatCode& code : FormatCodes()) {
    if (code.id != row.id) continue;
    list.append(list.empty() ? "" : ", ").append(code.name).append(" ").append(Hex(code.code, 8));
  }
  return list;
}

/// "`pRAA`", the characters of a fourcc, a space at the end included.
std::string Fourcc(std::uint32_t code) {
  std::string text = "`";
  for (int i = 0; i < 4; ++i) text += static_cast<char>(code >> (8 * i) & 0xFF);
  return text + "`";
}

std::string V4l2Names(const FormatRow& row) {
  std::string list;
  for (const V4l2Format& format : V4l2Formats()) {
    if (format.id != row.id) continue;
    list.append(list.empty() ? "" : ", ").append(format.name).append(" ").append(Fourcc(format.fourcc));
  }
  return list;
}

/// What the other vocabularies call the format, and with which packing.
void WriteNames(std::ostream& out, const FormatRow& row) {
  const unsigned flag = PackingFlagOf(row);
  const bool gigEVision = flag == PixelConverter::FLAG_PACKED_GIGE_VISION;
  if (const std::string codes = Codes(row); !codes.empty())
    out << "\nPFNC" << (gigEVision ? ", with that flag" : "") << ": " << codes << "\n";
  if (const std::string names = V4l2Names(row); !names.empty())
    out << "\nV4L2" << (flag != 0 ? ", with that flag" : "") << ": " << names << "\n";
}

/// The picture of the other order that the samples may have.
void WriteFlaggedPicture(std::ostream& out, const FormatRow& row) {
  const unsigned flag = PackingFlagOf(row);
  if (flag == 0) return;
  const bool gigEVision = flag == PixelConverter::FLAG_PACKED_GIGE_VISION;
  out << "\nWith `" << (gigEVision ? "FLAG_PACKED_GIGE_VISION" : "FLAG_PACKED_CSI2") << "` (`"
      << (gigEVision ? "PackingOrder::GigEVision" : "PackingOrder::Csi2") << "`), as "
      << (gigEVision ? "GigE Vision cameras send it" : "MIPI CSI-2 cameras send it") << ":\n\n```\n"
      << BitPicture(row, true) << "```\n";
}

bool IsSource(const FormatRow& row) {
  return !DestinationsOf(row).empty();
}

std::string Pairs(const FormatRow& row) {
  std::string others;
  std::size_t writers = 0;
  for (const FormatRow* destination : DestinationsOf(row)) {
    if (FindDestination(destination->id) != nullptr) {
      ++writers;
    } else {
      others.append(", ").append(destination->name);
    }
  }
  if (writers == 0 && others.empty()) return "none";
  return (writers == kDestinations.size() ? "all sixteen destinations" : std::to_string(writers)) + others;
}

void WriteSummary(std::ostream& out) {
  out << "| format | ID | bits, bytes registered | bits in memory | depth | source | destination |\n"
         "|---|---|---|---|---|---|---|\n";
  ForEachRow([&](const FormatRow& row) {
    out << "| " << row.name << " | " << row.id << " (" << Hex(static_cast<unsigned long>(row.id), 3)
        << ") | ";
    if (PixelTypeFactory::HasPixelType(row.id)) {
      out << row.bits << ", " << row.bytes;
    } else {
      out << "no type";
    }
    out << " | " << BitsInMemory(row) << " | " << unsigned{row.depth} << " | " << (IsSource(row) ? "yes" : "")
        << " | " << (FindDestination(row.id) != nullptr ? "yes" : "") << " |\n";
  });
}

void WriteFormat(std::ostream& out, const FormatRow& row) {
  out << "\n### " << row.name << "\n\n";
  out << "ID " << row.id << "; " << unsigned{row.group.pixels}
      << (row.group.pixels == 1 ? " pixel" : " pixels") << " in " << unsigned{row.group.bytes}
      << (row.group.bytes == 1 ? " byte" : " bytes")
      << (row.planes == 1 ? "" : " of each of the planes R, G, B, which follow one another") << ".";
  if ((row.traits & kSigned) != 0) out << " Samples are two's complement.";
  if (row.packing == Packing::Pair && row.depth < 12)
    out << " The unused bits of the middle byte are 0; if not, they are OR-ed into the sample's bits above.";
  out << "\n";
  out << "\n```\n" << BitPicture(row) << "```\n";
  WriteFlaggedPicture(out, row);
  WriteNames(out, row);
  if (IsSource(row)) out << "\nConverts to: " << Pairs(row) << "\n";
}

void WriteFormats(std::ostream& out) {
  out << "# Formats\n\n"
         "Generated from the format table, the registry and the tables of codes (target `update-pages`).\n\n"
         "Everything is little-endian. A line begins at a whole byte. The pictures show the smallest group "
         "of\n"
         "pixels that fills whole bytes, bit 7 of each byte at the left: `P1[11:8]` are bits 11 to 8 of the\n"
         "second pixel's sample, `-` is a bit that no sample uses. The bits and bytes that a type registers "
         "are\n"
         "part of its identity and not always those of its memory; sizes of buffers come from "
         "`DescribeFrame`.\n\n"
         "Formats have names in three vocabularies: the library's own, those of the GenICam Pixel Format "
         "Naming\n"
         "Convention (PFNC) with their codes, and those of Linux video devices (V4L2), by the kernel's name "
         "and by\n"
         "fourcc. `ReadFormat` and the tool take all of them. Where the same samples are also packed in "
         "another\n"
         "order, a second picture shows it; names of cameras carry the flag of the order they mean, so "
         "`Mono12Packed`\n"
         "as a person writes it is GigE Vision's order.\n\n";
  WriteSummary(out);
  for (const FamilyText& family : kFamilies) {
    out << "\n## " << family.title << "\n\n" << family.text << "\n";
    ForEachRow([&](const FormatRow& row) {
      if (row.family == family.family) WriteFormat(out, row);
    });
  }
}

/// The destination's part of an object's name: its writer's, which chains of packed colour may call
/// otherwise.
std::string WriterName(const FormatRow& source, const FormatRow& destination) {
  const DestinationRow* writer = FindDestination(destination.id);
  if (writer == nullptr) return std::string(destination.name);
  const bool colour = source.family == Family::YCbCr || source.family == Family::Rgb;
  return std::string(colour && source.packing == Packing::Dense ? writer->chained : writer->name);
}

void WriteConverters(std::ostream& out) {
  std::size_t count = 0;
  ForEachRow([&](const FormatRow& row) { count += DestinationsOf(row).size(); });
  out << "# Converters\n\n"
         "Generated from the registry (target `update-pages`), since names that a macro puts together cannot "
         "be\n"
         "found by searching the sources. Every pair is one static object of its family's file in\n"
         "`src/converters`.\n\n"
      << count << " pairs.\n";
  for (const FamilyText& family : kFamilies) {
    ForEachRow([&](const FormatRow& row) {
      if (row.family != family.family || !IsSource(row)) return;
      out << "\n## " << row.name << " (" << row.id << ")\n\n| object | destination | ID |\n|---|---|---|\n";
      for (const FormatRow* destination : DestinationsOf(row)) {
        out << "| `s" << row.name << "To" << WriterName(row, *destination) << "` | " << destination->name
            << " | " << destination->id << " |\n";
      }
    });
  }
}

}  // namespace

}  // namespace ZrConvertersLib::Pages

int main(int argc, char** argv) {
  const std::string page = argc == 3 ? argv[1] : "";
  if (page != "formats" && page != "converters") {
    std::fputs("usage: zrpages formats|converters FILE\n", stderr);
    return 2;
  }
  std::ofstream out(argv[2]);
  if (page == "formats") {
    ZrConvertersLib::Pages::WriteFormats(out);
  } else {
    ZrConvertersLib::Pages::WriteConverters(out);
  }
  out.close();
  return out ? 0 : 1;
}
