#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace fyn::productionrules::testing {

/** A folder of a test's own, removed with all that is in it. */
class ScratchFolder {
 public:
  ScratchFolder() : mPath((std::filesystem::temp_directory_path() / "prb-test-XXXXXX").string()) {
    if (mkdtemp(mPath.data()) == nullptr) {
      throw std::runtime_error("no scratch folder");
    }
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  std::string file(const std::string& name) const { return mPath + "/" + name; }

  /** Writes a file and returns its path. */
  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(file(name), std::ios::binary) << text;
    return file(name);
  }

  std::string read(const std::string& name) const {
    std::ifstream stream(file(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
  }

 private:
  std::string mPath;
};

}  // namespace fyn::productionrules::testing
