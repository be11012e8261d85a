#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace fyn::productionrules {

/** How the bytes of a file are packed. */
enum class Packing { None, Gzip, Zstd };

/** The packing that the ending of a file name asks for (.gz, .zst). */
Packing packingOfName(const std::string& path);

/** The packing whose files begin with that byte; no text does. `first` is what std::istream::peek gives. */
Packing packingOfBeginning(int first);

/** Turns bytes into packed ones or back, piece by piece. */
class Codec {
 public:
  /** What is still to be read and what may still be written; `run` moves both on. */
  struct Buffers {
    const char* in;
    std::size_t inSize;
    char* out;
    std::size_t outSize;
  };
  enum class Wanted {
    /** As much as suits. */
    Progress,
    /** All that was read is to be readable by others. */
    Flush,
    /** Nothing more comes. */
    End,
  };

  virtual ~Codec() = default;

  /** Raises std::runtime_error for bytes that are damaged. True when nothing of what was read waits inside.
   */
  virtual bool run(Buffers& buffers, Wanted wanted) = 0;
};

/** Neither is for Packing::None. */
std::unique_ptr<Codec> makePacker(Packing packing);
std::unique_ptr<Codec> makeUnpacker(Packing packing);

}  // namespace fyn::productionrules
