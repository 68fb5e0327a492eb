// The image library's own code. It is compiled without warnings, which are its authors' to heed.
#define STB_IMAGE_IMPLEMENTATION
#include "talvek/mineral_map/stb_settings.h"
