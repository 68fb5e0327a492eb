// Importing what a test has written.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/test_files.h"
#include "talvek/formats/import_mesh.h"
#include "talvek/support/exit_status.h"

namespace talvek::test {

/// Writes the bytes to a file of this name and imports it.
inline host::ImportedMesh importBytes(const std::string& name, std::string_view bytes,
                                      const host::ImportOptions& options = {}) {
    const TempFolder folder;
    writeFile(folder.file(name), bytes);
    return host::importMesh(folder.file(name), options);
}

/// The message with which an import ends, without the name of the folder; empty when it does not.
inline std::string refusalOf(const std::string& name, std::string_view bytes) {
    try {
        importBytes(name, bytes);
    } catch (const host::Failure& failure) {
        const std::string message = failure.what();
        return message.substr(message.find(name));
    }
    return "";
}

/// Bytes of words, for binary files.
std::string gzipped(std::string_view bytes);

}  // namespace talvek::test
