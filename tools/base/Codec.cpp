#include "tools/base/Codec.h"

#include <zlib.h>
#include <zstd.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <stdexcept>

namespace fyn::productionrules {

namespace {

constexpr int kGzipFirst = 0x1f;
constexpr int kZstdFirst = 0x28;
/** The largest window, and a header of gzip instead of that of zlib. */
constexpr int kGzipWindow = 15 + 16;
constexpr int kGzipMemory = 8;

[[noreturn]] void failDamaged() {
  throw std::runtime_error("the packed bytes are damaged");
}

/** Hands the buffers to zlib and moves them on by what it took. */
template <typename Work>
int withBuffers(z_stream& stream, Codec::Buffers& buffers, Work&& work) {
  constexpr std::size_t kMost = std::numeric_limits<uInt>::max();
  // zlib only reads it.
  stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(buffers.in));
  stream.avail_in = static_cast<uInt>(std::min(buffers.inSize, kMost));
  stream.next_out = reinterpret_cast<Bytef*>(buffers.out);
  stream.avail_out = static_cast<uInt>(std::min(buffers.outSize, kMost));
  const int result = work();
  const auto taken = static_cast<std::size_t>(reinterpret_cast<const char*>(stream.next_in) - buffers.in);
  const auto given = static_cast<std::size_t>(reinterpret_cast<char*>(stream.next_out) - buffers.out);
  buffers = {buffers.in + taken, buffers.inSize - taken, buffers.out + given, buffers.outSize - given};
  return result;
}

class GzipPacker final : public Codec {
 public:
  GzipPacker() {
    deflateInit2(&mStream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kGzipWindow, kGzipMemory, Z_DEFAULT_STRATEGY);
  }
  ~GzipPacker() override { deflateEnd(&mStream); }
  GzipPacker(const GzipPacker&) = delete;
  GzipPacker& operator=(const GzipPacker&) = delete;

  bool run(Buffers& buffers, Wanted wanted) override {
    const int flush = wanted == Wanted::End ? Z_FINISH : wanted == Wanted::Flush ? Z_SYNC_FLUSH : Z_NO_FLUSH;
    const int result = withBuffers(mStream, buffers, [&] { return deflate(&mStream, flush); });
    return wanted == Wanted::End ? result == Z_STREAM_END : buffers.outSize != 0;
  }

 private:
  z_stream mStream{};
};

class GzipUnpacker final : public Codec {
 public:
  GzipUnpacker() { inflateInit2(&mStream, kGzipWindow); }
  ~GzipUnpacker() override { inflateEnd(&mStream); }
  GzipUnpacker(const GzipUnpacker&) = delete;
  GzipUnpacker& operator=(const GzipUnpacker&) = delete;

  bool run(Buffers& buffers, Wanted /*wanted*/) override {
    if (mIsAtEnd && buffers.inSize != 0) {
      // Files that were packed one by one may stand behind one another.
      inflateReset(&mStream);
    }
    const int result = withBuffers(mStream, buffers, [this] { return inflate(&mStream, Z_NO_FLUSH); });
    if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) {
      failDamaged();
    }
    mIsAtEnd = result == Z_STREAM_END || (mIsAtEnd && result == Z_BUF_ERROR);
    return mIsAtEnd;
  }

 private:
  z_stream mStream{};
  bool mIsAtEnd = false;
};

/** Hands the buffers to zstd and moves them on by what it took; gives its hint of what is left. */
template <typename Work>
std::size_t withBuffers(Codec::Buffers& buffers, Work&& work) {
  ZSTD_inBuffer in{buffers.in, buffers.inSize, 0};
  ZSTD_outBuffer out{buffers.out, buffers.outSize, 0};
  const std::size_t left = work(&out, &in);
  if (ZSTD_isError(left) != 0) {
    failDamaged();
  }
  buffers = {buffers.in + in.pos, buffers.inSize - in.pos, buffers.out + out.pos, buffers.outSize - out.pos};
  return left;
}

class ZstdPacker final : public Codec {
 public:
  bool run(Buffers& buffers, Wanted wanted) override {
    const ZSTD_EndDirective directive = wanted == Wanted::End     ? ZSTD_e_end
                                        : wanted == Wanted::Flush ? ZSTD_e_flush
                                                                  : ZSTD_e_continue;
    const std::size_t left = withBuffers(buffers, [&](ZSTD_outBuffer* out, ZSTD_inBuffer* in) {
      return ZSTD_compressStream2(mContext.get(), out, in, directive);
    });
    return wanted == Wanted::Progress || left == 0;
  }

 private:
  std::unique_ptr<ZSTD_CCtx, decltype(&ZSTD_freeCCtx)> mContext{ZSTD_createCCtx(), ZSTD_freeCCtx};
};

class ZstdUnpacker final : public Codec {
 public:
  bool run(Buffers& buffers, Wanted /*wanted*/) override {
    if (buffers.inSize != 0 || !mIsAtEnd) {
      mIsAtEnd = withBuffers(buffers, [this](ZSTD_outBuffer* out, ZSTD_inBuffer* in) {
                   return ZSTD_decompressStream(mContext.get(), out, in);
                 }) == 0;
    }
    return mIsAtEnd;
  }

 private:
  std::unique_ptr<ZSTD_DCtx, decltype(&ZSTD_freeDCtx)> mContext{ZSTD_createDCtx(), ZSTD_freeDCtx};
  bool mIsAtEnd = false;
};

}  // namespace

Packing packingOfName(const std::string& path) {
  const std::string ending = std::filesystem::path(path).extension().string();
  return ending == ".gz" ? Packing::Gzip : ending == ".zst" ? Packing::Zstd : Packing::None;
}

Packing packingOfBeginning(int first) {
  return first == kGzipFirst ? Packing::Gzip : first == kZstdFirst ? Packing::Zstd : Packing::None;
}

std::unique_ptr<Codec> makePacker(Packing packing) {
  if (packing == Packing::Gzip) {
    return std::make_unique<GzipPacker>();
  }
  return std::make_unique<ZstdPacker>();
}

std::unique_ptr<Codec> makeUnpacker(Packing packing) {
  if (packing == Packing::Gzip) {
    return std::make_unique<GzipUnpacker>();
  }
  return std::make_unique<ZstdUnpacker>();
}

}  // namespace fyn::productionrules
