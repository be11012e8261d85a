#pragma once

#include <array>
#include <ostream>
#include <streambuf>

#include "tools/base/Codec.h"

namespace fyn::productionrules {

/** Packs what is written to it. A flush makes all that was written readable by others; the end of the object
 * ends the packed stream. */
class PackingBuffer final : public std::streambuf {
 public:
  /** `packed` must outlive the buffer. */
  PackingBuffer(std::ostream& packed, Packing packing);
  ~PackingBuffer() override;
  PackingBuffer(const PackingBuffer&) = delete;
  PackingBuffer& operator=(const PackingBuffer&) = delete;

 protected:
  int_type overflow(int_type c) override;
  int sync() override;

 private:
  static constexpr std::size_t kSize = 65536;

  bool pack(Codec::Wanted wanted);

  std::ostream& mPacked;
  const std::unique_ptr<Codec> mCodec;
  std::array<char, kSize> mIn{};
  std::array<char, kSize> mOut{};
};

}  // namespace fyn::productionrules
