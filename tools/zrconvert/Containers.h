// The kinds of file that a picture can be written to.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Picture.h"

namespace zrconvert {

enum class Container : std::uint8_t { Bmp, Png, Pgm, Ppm, Raw };

// By the name without the dot ("png"), or by the ending of a path; nothing when it names none.
std::optional<Container> ContainerByName(std::string_view name);
std::optional<Container> ContainerByEnding(std::string_view path);
std::string_view NameOf(Container container);

// Why a picture of this layout cannot go into the container; empty when it can.
std::string WhyNot(Container container, const PictureLayout& layout);

// True when several pictures may follow one another in one file.
bool HoldsSequences(Container container);

// Writes the picture to the end of the file at `path`, which exists; throws Failure when not every byte could
// be written.
void WritePicture(const std::string& path, Container container, const Picture& picture);

// One function per container.
void WriteBmp(const std::string& path, const Picture& picture);
void WritePng(const std::string& path, const Picture& picture);
void WritePnm(const std::string& path, const Picture& picture);
void WriteRaw(const std::string& path, const Picture& picture);

}  // namespace zrconvert
