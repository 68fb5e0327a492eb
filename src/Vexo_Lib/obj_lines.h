// The fast way through the lines that nearly all OBJ files consist of.
#pragma once

#include "Vexo_Lib/obj_records.h"

namespace talvek {

/// The shortest text that readPlainLines looks at.
inline constexpr std::size_t kPlainLineWindow = 96;

/// The characters that have to be readable in front of the text, whatever they are.
inline constexpr std::size_t kPlainLineMargin = 16;

/// Reads records from the start of a token on, as long as they are plain: a keyword, numbers in decimal notation, white
/// space. kPlainLineMargin characters in front of the text have to be readable. Returns where the first token stands
/// that has to be read in the general way, either because it is not plain or because fewer than kPlainLineWindow
/// characters follow. Throws std::bad_alloc.
const char* readPlainLines(const char* text, const char* end, ObjRecords& records);

/// The same with the same result, as machines without SSE2 do it.
const char* readPlainLinesPortably(const char* text, const char* end, ObjRecords& records);

}  // namespace talvek
