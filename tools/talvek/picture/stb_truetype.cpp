// The font library's own code. It is compiled without warnings, which are its authors' to heed.
#define STB_TRUETYPE_IMPLEMENTATION
#include <stb/stb_truetype.h>
