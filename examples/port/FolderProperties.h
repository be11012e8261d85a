#pragma once

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "platform/PropertyStore.h"
#include "platform/TextFile.h"

/** Properties as files, one per key, so that every process and a shell script can read and set them. Those
 * that outlive a restart lie in one folder, the others in one that the device empties when it starts. */
class FolderProperties final : public fyn::productionrules::PropertyStore {
 public:
  FolderProperties(std::string lasting, std::string passing)
      : mLasting(std::move(lasting)), mPassing(std::move(passing)) {}

  std::optional<std::string> get(const std::string& key) const override {
    return fyn::productionrules::readTextFile(fileOf(key));
  }

  /** Under another name first, so that nobody reads half of it. */
  bool set(const std::string& key, const std::string& value) override {
    const std::string written = fileOf(key) + ".new";
    std::error_code fault;
    if (std::ofstream(written) << value << std::flush) {
      std::filesystem::rename(written, fileOf(key), fault);
      return !fault;
    }
    return false;
  }

  void forEach(
      const std::function<void(const std::string& key, const std::string& value)>& visit) const override {
    std::map<std::string, std::string> ascending;
    for (const std::string& folder : {mLasting, mPassing}) {
      for (const auto& file : std::filesystem::directory_iterator(folder)) {
        const std::string key = file.path().filename();
        if (const std::optional<std::string> value = get(key); value && file.path().extension() != ".new") {
          ascending.emplace(key, *value);
        }
      }
    }
    for (const auto& [key, value] : ascending) {
      visit(key, value);
    }
  }

 private:
  std::string fileOf(const std::string& key) const {
    return (key.rfind("persist.", 0) == 0 ? mLasting : mPassing) + '/' + key;
  }

  const std::string mLasting;
  const std::string mPassing;
};
