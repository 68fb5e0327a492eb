#include "talvek/export/zip_writer.h"

#include <zlib.h>

#include <algorithm>

#include "talvek/export/binary_rows.h"

namespace talvek::host {

namespace {

// Sizes and places always stand in the extra field of 64 bits, so that there is one form for all.
constexpr std::uint32_t kElsewhere = 0xFFFFFFFF;
constexpr std::uint32_t kVersion = 45;
/// The checksum follows the bytes; names are UTF-8.
constexpr std::uint32_t kFlags = 0x0008 | 0x0800;
constexpr std::uint32_t kStored = 0;
/// The first day that the format knows: archives of the same numbers are the same.
constexpr std::uint32_t kDate = 0x00210000;
constexpr std::uint32_t kLongField = 1;

}  // namespace

void ZipWriter::put16(std::uint32_t value) {
    const char bytes[] = {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
    file_.writeBytes(bytes, sizeof bytes);
    written_ += sizeof bytes;
}

void ZipWriter::put32(std::uint32_t value) {
    writeNumber(file_, value);
    written_ += sizeof value;
}

void ZipWriter::put64(std::uint64_t value) {
    writeLong(file_, value);
    written_ += sizeof value;
}

void ZipWriter::begin(const std::string& name, std::uint64_t size) {
    entries_.push_back({name, size, written_, static_cast<std::uint32_t>(crc32(0, nullptr, 0))});
    put32(0x04034B50);
    put16(kVersion);
    put16(kFlags);
    put16(kStored);
    put32(kDate);
    put32(0);
    put32(kElsewhere);
    put32(kElsewhere);
    put16(static_cast<std::uint32_t>(name.size()));
    put16(20);
    file_.write(name);
    written_ += name.size();
    put16(kLongField);
    put16(16);
    put64(size);
    put64(size);
}

void ZipWriter::write(std::string_view bytes) {
    file_.write(bytes);
    written_ += bytes.size();
    std::uint32_t& checksum = entries_.back().checksum;
    while (!bytes.empty()) {
        constexpr std::size_t kAtOnce = 1 << 30;
        const std::string_view part = bytes.substr(0, kAtOnce);
        checksum = static_cast<std::uint32_t>(
            crc32(checksum, reinterpret_cast<const Bytef*>(part.data()), static_cast<uInt>(part.size())));
        bytes.remove_prefix(part.size());
    }
}

void ZipWriter::end() {
    put32(0x08074B50);
    put32(entries_.back().checksum);
    put64(entries_.back().size);
    put64(entries_.back().size);
}

void ZipWriter::putListed(const Entry& entry) {
    put32(0x02014B50);
    put16(kVersion);
    put16(kVersion);
    put16(kFlags);
    put16(kStored);
    put32(kDate);
    put32(entry.checksum);
    put32(kElsewhere);
    put32(kElsewhere);
    put16(static_cast<std::uint32_t>(entry.name.size()));
    put16(28);
    put16(0);
    put16(0);
    put16(0);
    put32(0);
    put32(kElsewhere);
    file_.write(entry.name);
    written_ += entry.name.size();
    put16(kLongField);
    put16(24);
    put64(entry.size);
    put64(entry.size);
    put64(entry.offset);
}

void ZipWriter::finish() {
    const std::uint64_t list = written_;
    for (const Entry& entry : entries_) {
        putListed(entry);
    }
    const std::uint64_t end = written_;
    put32(0x06064B50);
    put64(44);
    put16(kVersion);
    put16(kVersion);
    put32(0);
    put32(0);
    put64(entries_.size());
    put64(entries_.size());
    put64(end - list);
    put64(list);
    put32(0x07064B50);
    put32(0);
    put64(end);
    put32(1);
    put32(0x06054B50);
    put16(0);
    put16(0);
    put16(static_cast<std::uint32_t>(entries_.size()));
    put16(static_cast<std::uint32_t>(entries_.size()));
    put32(kElsewhere);
    put32(kElsewhere);
    put16(0);
}

}  // namespace talvek::host
