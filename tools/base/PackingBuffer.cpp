#include "tools/base/PackingBuffer.h"

namespace fyn::productionrules {

PackingBuffer::PackingBuffer(std::ostream& packed, Packing packing)
    : mPacked(packed), mCodec(makePacker(packing)) {
  setp(mIn.data(), mIn.data() + mIn.size());
}

PackingBuffer::~PackingBuffer() {
  pack(Codec::Wanted::End);
}

bool PackingBuffer::pack(Codec::Wanted wanted) {
  Codec::Buffers buffers{pbase(), static_cast<std::size_t>(pptr() - pbase()), nullptr, 0};
  bool isDone = false;
  while (!isDone || buffers.inSize != 0) {
    buffers.out = mOut.data();
    buffers.outSize = mOut.size();
    isDone = mCodec->run(buffers, wanted);
    mPacked.write(mOut.data(), buffers.out - mOut.data());
  }
  setp(mIn.data(), mIn.data() + mIn.size());
  return static_cast<bool>(mPacked);
}

PackingBuffer::int_type PackingBuffer::overflow(int_type c) {
  if (!pack(Codec::Wanted::Progress)) {
    return traits_type::eof();
  }
  return traits_type::eq_int_type(c, traits_type::eof()) ? traits_type::not_eof(c)
                                                         : sputc(traits_type::to_char_type(c));
}

int PackingBuffer::sync() {
  return pack(Codec::Wanted::Flush) && mPacked.flush() ? 0 : -1;
}

}  // namespace fyn::productionrules
