#include "talvek/support/sha256.h"

#include <algorithm>
#include <bit>
#include <vector>

#include "base/system.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

// The first 32 bits of the fractional parts of the cube roots of the first 64 primes.
constexpr std::array<std::uint32_t, 64> kRounds = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

std::array<std::uint32_t, 64> scheduleOf(const unsigned char* block) {
    std::array<std::uint32_t, 64> words{};
    for (std::size_t i = 0; i < 16; ++i) {
        for (std::size_t k = 0; k < 4; ++k) {
            words[i] = words[i] << 8 | block[4 * i + k];
        }
    }
    for (std::size_t i = 16; i < words.size(); ++i) {
        const std::uint32_t a = words[i - 15];
        const std::uint32_t b = words[i - 2];
        words[i] = words[i - 16] + (std::rotr(a, 7) ^ std::rotr(a, 18) ^ a >> 3) + words[i - 7] +
                   (std::rotr(b, 17) ^ std::rotr(b, 19) ^ b >> 10);
    }
    return words;
}

}  // namespace

void Sha256::addBlock(const unsigned char* block) {
    const std::array<std::uint32_t, 64> words = scheduleOf(block);
    auto [a, b, c, d, e, f, g, h] = state_;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::uint32_t first =
            h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + ((e & f) ^ (~e & g)) + kRounds[i] + words[i];
        const std::uint32_t second =
            (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + first;
        d = c;
        c = b;
        b = a;
        a = first + second;
    }
    const std::array<std::uint32_t, 8> sums = {a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < sums.size(); ++i) {
        state_[i] += sums[i];
    }
}

void Sha256::add(std::string_view bytes) {
    const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t left = bytes.size();
    while (left > 0) {
        const std::size_t used = length_ % kBlock;
        const std::size_t taken = std::min(left, kBlock - used);
        if (taken == kBlock) {
            addBlock(data);
        } else {
            std::copy_n(data, taken, pending_.begin() + static_cast<std::ptrdiff_t>(used));
            if (used + taken == kBlock) {
                addBlock(pending_.data());
            }
        }
        data += taken;
        left -= taken;
        length_ += taken;
    }
}

std::string Sha256::finish() {
    const std::uint64_t bits = 8 * length_;
    std::string end(1, '\x80');
    end.append((2 * kBlock - 8 - 1 - length_ % kBlock) % kBlock, '\0');
    for (int shift = 56; shift >= 0; shift -= 8) {
        end += static_cast<char>(bits >> shift & 0xFF);
    }
    add(end);
    std::string text;
    for (const std::uint32_t word : state_) {
        for (int shift = 28; shift >= 0; shift -= 4) {
            text += "0123456789abcdef"[word >> shift & 0xF];
        }
    }
    return text;
}

FileSum sumOf(const std::string& path) {
    system::File file = system::File::openForReading(path.c_str());
    std::vector<char> piece(std::size_t{1} << 20);
    Sha256 sum;
    FileSum result;
    std::int64_t got = file.isOpen() ? 1 : -1;
    while (got > 0) {
        got = file.read(piece.data(), piece.size());
        if (got > 0) {
            sum.add({piece.data(), static_cast<std::size_t>(got)});
            result.bytes += static_cast<std::uint64_t>(got);
        }
    }
    if (got < 0) {
        throw Failure(kExitOutput, path + ": the file cannot be read");
    }
    result.sha256 = sum.finish();
    return result;
}

}  // namespace talvek::host
