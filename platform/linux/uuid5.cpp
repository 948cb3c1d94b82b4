#include "platform/linux/uuid5.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string>

namespace platform {
namespace {

using Digest = std::array<std::uint32_t, 5>;

constexpr std::size_t kBlock = 64;

void AppendBigEndian(std::string& bytes, std::uint64_t value, int count) {
  for (int shift = 8 * (count - 1); shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<char>((value >> static_cast<unsigned>(shift)) & 0xFFU));
  }
}

std::uint32_t BigEndianWord(std::string_view bytes) {
  std::uint32_t word = 0;
  for (const char byte : bytes.substr(0, 4)) {
    word = (word << 8U) | static_cast<unsigned char>(byte);
  }
  return word;
}

void AddBlock(Digest& digest, std::string_view block) {
  std::array<std::uint32_t, 80> w{};
  for (std::size_t i = 0; i < 16; ++i) w.at(i) = BigEndianWord(block.substr(4 * i));
  for (std::size_t i = 16; i < w.size(); ++i) {
    w.at(i) = std::rotl(w.at(i - 3) ^ w.at(i - 8) ^ w.at(i - 14) ^ w.at(i - 16), 1);
  }
  auto [a, b, c, d, e] = digest;
  for (std::size_t i = 0; i < w.size(); ++i) {
    std::uint32_t mixed = 0;
    if (i < 20) {
      mixed = ((b & c) | (~b & d)) + 0x5A827999U;
    } else if (i < 40) {
      mixed = (b ^ c ^ d) + 0x6ED9EBA1U;
    } else if (i < 60) {
      mixed = ((b & c) | (b & d) | (c & d)) + 0x8F1BBCDCU;
    } else {
      mixed = (b ^ c ^ d) + 0xCA62C1D6U;
    }
    const std::uint32_t next = std::rotl(a, 5) + mixed + e + w.at(i);
    e = d;
    d = c;
    c = std::rotl(b, 30);
    b = a;
    a = next;
  }
  digest = {digest[0] + a, digest[1] + b, digest[2] + c, digest[3] + d, digest[4] + e};
}

Digest Sha1(std::string message) {
  const std::uint64_t bits = 8 * static_cast<std::uint64_t>(message.size());
  message.push_back('\x80');
  while (message.size() % kBlock != kBlock - 8) message.push_back('\0');
  AppendBigEndian(message, bits, 8);
  Digest digest = {0x67452301U, 0xEFCDAB89U, 0x98BADCFEU, 0x10325476U, 0xC3D2E1F0U};
  for (std::size_t start = 0; start < message.size(); start += kBlock) {
    AddBlock(digest, std::string_view(message).substr(start, kBlock));
  }
  return digest;
}

}  // namespace

Guid NameToGuid(const Guid& nameSpace, std::string_view name) {
  std::string message;
  AppendBigEndian(message, nameSpace.data1, 4);
  AppendBigEndian(message, nameSpace.data2, 2);
  AppendBigEndian(message, nameSpace.data3, 2);
  for (const std::uint8_t byte : nameSpace.data4) message.push_back(static_cast<char>(byte));
  const Digest digest = Sha1(message.append(name));

  Guid guid{digest[0],
            static_cast<std::uint16_t>(digest[1] >> 16U),
            static_cast<std::uint16_t>((digest[1] & 0x0FFFU) | 0x5000U),
            {}};
  for (std::size_t i = 0; i < guid.data4.size(); ++i) {
    const unsigned shift = 24U - 8U * static_cast<unsigned>(i % 4);
    guid.data4.at(i) = static_cast<std::uint8_t>(digest.at(2 + i / 4) >> shift);
  }
  guid.data4[0] = static_cast<std::uint8_t>((guid.data4[0] & 0x3FU) | 0x80U);
  return guid;
}

}  // namespace platform
