// SPDX-License-Identifier: MIT
#include "tests/support/BusTamper.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>

namespace {

using Message = std::vector<std::uint8_t>;

constexpr std::size_t kHead = 16;  // up to the fields of the header
constexpr std::size_t kBodyLengthAt = 4, kFieldsLengthAt = 12;
constexpr std::uint8_t kLittleEndian = 'l';

std::uint32_t numberAt(std::span<const std::uint8_t> bytes, std::size_t at) {
    std::uint32_t number = 0;
    std::memcpy(&number, bytes.data() + at, sizeof number);
    return number;
}

std::size_t aligned(std::size_t at, std::size_t to) {
    return (at + to - 1) / to * to;
}

// The bytes of the first message or, before there are any, of the first line of the
// handshake; none where they have not all come.
std::optional<std::size_t> firstOf(std::span<const std::uint8_t> bytes) {
    if (bytes.empty()) return std::nullopt;
    if (bytes[0] != kLittleEndian) {
        const auto end = std::find(bytes.begin(), bytes.end(), std::uint8_t{'\n'});
        if (end == bytes.end()) return std::nullopt;
        return static_cast<std::size_t>(end - bytes.begin()) + 1;
    }
    if (bytes.size() < kHead) return std::nullopt;
    const std::size_t whole =
        aligned(kHead + numberAt(bytes, kFieldsLengthAt), 8) + numberAt(bytes, kBodyLengthAt);
    if (bytes.size() < whole) return std::nullopt;
    return whole;
}

// The last character of the sender's name; none where the message has no such field.
std::uint8_t* senderEnd(Message& message) {
    constexpr std::uint8_t kSender = 7;
    const std::size_t end = kHead + numberAt(message, kFieldsLengthAt);
    std::size_t at = kHead;
    while (at + 8 < end) {
        const std::uint8_t code = message[at];
        const std::uint8_t type = message[at + 2];  // after the signature's length
        at += 4;
        if (type == 'g') {
            at += std::size_t{message[at]} + 2;
        } else {
            const std::size_t length = numberAt(message, at);
            if (code == kSender) return &message[at + 3 + length];
            at += type == 'u' ? 4 : 4 + length + 1;
        }
        at = aligned(at, 8);
    }
    return nullptr;
}

}  // namespace

std::vector<std::uint8_t> BusTamper::pass(std::span<const std::uint8_t> bytes) {
    waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
    std::vector<std::uint8_t> out;
    while (const auto whole = firstOf(waiting_)) {
        const auto end = waiting_.begin() + static_cast<std::ptrdiff_t>(*whole);
        change(Message(waiting_.begin(), end), out);
        waiting_.erase(waiting_.begin(), end);
    }
    return out;
}

void BusTamper::change(Message message, std::vector<std::uint8_t>& out) {
    const bool isMessage = message[0] == kLittleEndian;
    if (isMessage && happens(harm_.drops)) return;
    if (isMessage && happens(harm_.strangers)) {
        Message other = message;
        if (std::uint8_t* const last = senderEnd(other)) *last = *last == '1' ? '2' : '1';
        out.insert(out.end(), other.begin(), other.end());
        if (happens(0.5)) return;
    }
    if (isMessage && happens(harm_.stretches)) {
        // 128 MiB is the most of a message.
        const std::array<std::uint32_t, 4> lengths{
            numberAt(message, kBodyLengthAt) + 1 + static_cast<std::uint32_t>(below(4096)),
            1U << 20, (1U << 27) + 1, 0xFFFFFFFF};
        const std::uint32_t length = lengths.at(below(lengths.size()));
        std::memcpy(&message[kBodyLengthAt], &length, sizeof length);
    }
    if (isMessage && happens(harm_.truncates)) message.resize(1 + below(message.size() - 1));
    out.insert(out.end(), message.begin(), message.end());
}
