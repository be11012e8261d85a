#pragma once

#include <array>
#include <istream>
#include <streambuf>

#include "tools/base/StopSignals.h"

namespace fyn::productionrules {

/**
 * Standard input that ends, as if nothing more came, when a signal asks the program to end. A read that waits
 * for a pipe would never hear of it, because the signals are held back. Any other stream than std::cin is
 * passed on as it is.
 */
class StoppableInput : private std::streambuf {
 public:
  StoppableInput(std::istream& input, StopSignals& stop);

  std::istream& stream() { return mIsStandardInput ? mStream : mInput; }

 protected:
  int_type underflow() override;

 private:
  std::istream& mInput;
  StopSignals& mStop;
  const bool mIsStandardInput;
  std::array<char, 65536> mBuffer;
  std::istream mStream;
};

}  // namespace fyn::productionrules
