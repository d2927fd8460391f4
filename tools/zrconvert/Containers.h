// The kinds of file that a picture can be written to.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ByteSink.h"
#include "Picture.h"

namespace zrconvert {

enum class Container : std::uint8_t { Bmp, Png, Pgm, Ppm, Pnm, Raw };

struct EncoderOptions {
  int pngLevel = 1;  // 0 (no compression) to 9 (smallest)
};

// By the name without the dot ("png"), or by the ending of a path; nothing when it names none.
std::optional<Container> ContainerByName(std::string_view name);
std::optional<Container> ContainerByEnding(std::string_view path);
std::string_view NameOf(Container container);

// "bmp, png, ..."
std::string NamesOfContainers();

// Why a picture of this layout and size cannot go into the container; empty when it can.
std::string WhyNot(Container container, const PictureLayout& layout, std::uint64_t width,
                   std::uint64_t height);

// True when several pictures may follow one another in one file.
bool HoldsSequences(Container container);

// Throws Failure when not every byte could be written.
void WritePicture(ByteSink& sink, Container container, const Picture& picture, const EncoderOptions& options);

// One function per container.
void WriteBmp(ByteSink& sink, const Picture& picture, const EncoderOptions& options);
void WritePng(ByteSink& sink, const Picture& picture, const EncoderOptions& options);
void WritePnm(ByteSink& sink, const Picture& picture, const EncoderOptions& options);
void WriteRaw(ByteSink& sink, const Picture& picture, const EncoderOptions& options);

}  // namespace zrconvert
