#include "tools/tune/TuneResults.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "tools/base/FileFault.h"
#include "tools/base/InputFile.h"
#include "tools/base/UsageError.h"

namespace fyn::productionrules {

namespace {

using nlohmann::json;

/** How every result line begins. */
constexpr std::string_view kBeginning = "{\"content\":\"";

/** 64-bit FNV-1a. */
class Hash {
 public:
  void add(std::string_view text) {
    for (const char c : text) {
      mValue = (mValue ^ static_cast<unsigned char>(c)) * 1099511628211U;
    }
  }

  std::string text() const {
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(mValue));
    return digits.data();
  }

 private:
  std::uint64_t mValue = 14695981039346656037U;
};

}  // namespace

TuneRecording tuneRecording(const std::string& path) {
  InputFile file(path, std::cin);
  Hash hash;
  std::vector<char> block(1U << 16U);
  do {
    file.stream().read(block.data(), static_cast<std::streamsize>(block.size()));
    hash.add({block.data(), static_cast<std::size_t>(file.stream().gcount())});
  } while (file.stream());
  return {path, hash.text()};
}

std::string setupFingerprint(const MeasuredSetup& setup) {
  std::string text = setup.configuration.value_or("");
  for (const auto& [key, value] : setup.properties) {
    text.append(1, '\0').append(key).append(1, '\0').append(value);
  }
  Hash hash;
  hash.add(text);
  return hash.text();
}

std::string tuneResultLine(const TuneJob& job, const std::string& fingerprint, const Measurement& measured) {
  const json line{{"values", candidateText(job.candidate)},
                  {"recording", job.recording.path},
                  {"content", job.recording.fingerprint},
                  {"setup", fingerprint},
                  {"figures", measurementAsJson(measured)}};
  return line.dump(-1, ' ', false, json::error_handler_t::replace);
}

TuneResults::TuneResults(std::string path, std::string fingerprint)
    : mPath(std::move(path)), mFingerprint(std::move(fingerprint)) {
  if (std::filesystem::exists(mPath)) {
    read();
  }
  mFile.open(mPath, std::ios::app | std::ios::binary);
  if (!mFile) {
    cannotOpen(mPath, "writing");
  }
}

void TuneResults::read() {
  std::ifstream file(mPath, std::ios::binary);
  if (!file || std::filesystem::is_directory(mPath)) {
    throw UsageError(mPath + ": cannot be opened for reading");
  }
  std::uintmax_t complete = 0;
  std::string line;
  for (int number = 1; std::getline(file, line) && !file.eof(); ++number) {
    try {
      take(line);
    } catch (const json::exception&) {
      throw UsageError(mPath + ":" + std::to_string(number) + ": not a result of 'prb tune'");
    } catch (const UsageError& error) {
      throw UsageError(mPath + ":" + std::to_string(number) + ": " + error.what());
    }
    complete += line.size() + 1;
  }
  if (std::filesystem::file_size(mPath) > complete) {
    // Only the rest of a run that was killed is cut off, not the last line of some other file.
    if (line.compare(0, kBeginning.size(), kBeginning, 0, line.size()) != 0) {
      throw UsageError(mPath +
                       ": does not end with a result of 'prb tune'; name another file with --results");
    }
    std::filesystem::resize_file(mPath, complete);
  }
}

void TuneResults::take(const std::string& line) {
  const json document = json::parse(line);
  if (document.at("setup").get<std::string>() != mFingerprint) {
    throw UsageError("made with another --config or --property; name another file with --results");
  }
  const auto textAt = [&document](const char* key) { return document.at(key).get<std::string>(); };
  mDone[{textAt("values"), textAt("recording"), textAt("content")}] = measurementOf(document.at("figures"));
}

TuneResults::Key TuneResults::keyOf(const TuneJob& job) {
  return {candidateText(job.candidate), job.recording.path, job.recording.fingerprint};
}

const Measurement* TuneResults::find(const TuneJob& job) const {
  const auto entry = mDone.find(keyOf(job));
  return entry != mDone.end() ? &entry->second : nullptr;
}

void TuneResults::add(const TuneJob& job, const Measurement& measured) {
  mDone[keyOf(job)] = measured;
  mFile << tuneResultLine(job, mFingerprint, measured) << std::endl;
  if (!mFile) {
    throw std::runtime_error(mPath + ": cannot be written");
  }
}

}  // namespace fyn::productionrules
