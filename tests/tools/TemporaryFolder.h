#pragma once

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace fyn::productionrules::testing {

/** A folder of a test's own, deleted with everything in it. */
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "prb-test-XXXXXX").string();
    mPath = mkdtemp(name.data()) != nullptr ? name : std::string();
  }
  ~TemporaryFolder() { std::filesystem::remove_all(mPath); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string path(const std::string& name) const { return mPath + "/" + name; }

  /** Writes a file and returns its path. */
  std::string write(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
  }

  std::string read(const std::string& name) const {
    std::ifstream file(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

 private:
  std::string mPath;
};

}  // namespace fyn::productionrules::testing
