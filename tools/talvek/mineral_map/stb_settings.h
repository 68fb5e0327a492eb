// The image library, cut down to what is needed of it.
#pragma once

#define STBI_ONLY_PNG
#define STBI_ONLY_BMP
#define STBI_NO_STDIO
#include <stb/stb_image.h>
