#pragma once

#include <array>
#include <istream>
#include <streambuf>

#include "tools/base/Codec.h"

namespace fyn::productionrules {

/** What a packed stream holds, unpacked as it is read. Damaged or missing bytes make the reading stream bad.
 */
class UnpackingBuffer final : public std::streambuf {
 public:
  /** `packed` must outlive the buffer. */
  UnpackingBuffer(std::istream& packed, Packing packing) : mPacked(packed), mCodec(makeUnpacker(packing)) {}

 protected:
  int_type underflow() override;

 private:
  static constexpr std::size_t kSize = 65536;

  std::istream& mPacked;
  const std::unique_ptr<Codec> mCodec;
  std::array<char, kSize> mIn{};
  std::array<char, kSize> mOut{};
  Codec::Buffers mBuffers{mIn.data(), 0, mOut.data(), 0};
};

}  // namespace fyn::productionrules
