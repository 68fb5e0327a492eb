// Whether a PNG file is as it was written. The image library decodes damaged ones without a word.
#pragma once

#include <string_view>

namespace talvek::host {

/// Whether the bytes begin as every PNG does.
bool isPng(std::string_view bytes);

/// Whether every chunk of a PNG is complete and has the checksum that goes with it, the last one being IEND.
bool isIntactPng(std::string_view bytes);

}  // namespace talvek::host
