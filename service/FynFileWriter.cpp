#include "service/FynFileWriter.h"

#include <cstdlib>
#include <fstream>
#include <iostream>

#include "platform/Ticks.h"
#include "platform/VisionSettings.h"

namespace fyn::productionrules {

namespace {

constexpr const char* kTag = "ProductionRulesIPCService";

std::string dumpFolder() {
  const char* const folder = std::getenv("FYN_DUMP_DIR");
  return folder != nullptr ? std::string(folder) + "/" : "/data/local/cvml-app-test/";
}

std::unique_ptr<std::ostream> openFile(const std::string& path) {
  return std::make_unique<std::ofstream>(path, std::ios::binary);
}

}  // namespace

FynFileWriter::FynFileWriter(const std::string& name, const DumpOpener& open)
    : mPath(dumpFolder() + name + "_" + std::to_string(getWallTs64()) + ".txt"),
      mFile(open ? open(mPath) : openFile(mPath)) {
  if (mFile != nullptr && mFile->good()) {
    PRB_LOGI(kTag, "file open successful");
  } else {
    PRB_LOGE(kTag, "could not open file %s\n", mPath.c_str());
    mFile = nullptr;
  }
}

void FynFileWriter::write(const std::string& text) {
  if (mFile == nullptr) {
    std::cerr << "Error writing to closed file '" << mPath << "'." << '\n';
    return;
  }
  if (mHasEnded) {
    return;
  }
  mWritten += text.size() + 1;
  const bool isFull = mWritten > kMostBytes;
  if (!isFull) {
    *mFile << text << '\n' << std::flush;
  }
  if (isFull || !*mFile) {
    mHasEnded = true;
    std::cerr << "Error writing to file '" << mPath << "'"
              << (isFull ? ": it has reached " + std::to_string(kMostBytes / 1'000'000) +
                               " MB, the rest is left out."
                         : ".")
              << '\n';
  }
}

}  // namespace fyn::productionrules
