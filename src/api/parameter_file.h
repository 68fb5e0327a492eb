// The text file in which a session's parameters are kept beside its mesh.
//
// One statement per line: a key, "=", a value, ";". Keys are compared by prefix: "mode", "model" and "epcs" take an
// integer, "mtl" the eight material values, "epc_0" the five values of every epoch without a line of its own, "epc_"
// followed by n the five values of epoch n. All other lines are passed over.
#pragma once

namespace talvek {

/// Reads mode, model and number of epochs into the session; out-of-range values become 1, 3 and 1. Returns false, after
/// saying so on standard output, when the file cannot be opened or read. Throws std::bad_alloc.
bool readParameterHeader();

/// Reads the whole file into the session, whose parameter stores exist. Returns false when the file cannot be opened or
/// read. Throws std::bad_alloc.
bool readParameterFile();

/// Writes the session's parameters, whose stores exist. Returns false, with the previous file intact, when that fails.
/// Throws std::bad_alloc.
bool writeParameterFile();

}  // namespace talvek
