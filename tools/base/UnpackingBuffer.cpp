#include "tools/base/UnpackingBuffer.h"

#include <stdexcept>

namespace fyn::productionrules {

UnpackingBuffer::int_type UnpackingBuffer::underflow() {
  mBuffers.out = mOut.data();
  mBuffers.outSize = mOut.size();
  bool isWhole = false;
  while (mBuffers.outSize == mOut.size()) {
    if (mBuffers.inSize == 0 && mPacked) {
      mPacked.read(mIn.data(), static_cast<std::streamsize>(mIn.size()));
      mBuffers.in = mIn.data();
      mBuffers.inSize = static_cast<std::size_t>(mPacked.gcount());
    }
    const bool hasMore = mBuffers.inSize != 0;
    isWhole = mCodec->run(mBuffers, Codec::Wanted::Progress);
    if (!hasMore && mBuffers.outSize == mOut.size()) {
      if (!isWhole) {
        throw std::runtime_error("the packed bytes end in the middle");
      }
      return traits_type::eof();
    }
  }
  setg(mOut.data(), mOut.data(), mBuffers.out);
  return traits_type::to_int_type(mOut[0]);
}

}  // namespace fyn::productionrules
