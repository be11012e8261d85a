#include "tools/tune/TuneResults.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "tools/prb/UsageError.h"

namespace fyn::productionrules {

namespace {

using nlohmann::json;

/** 64-bit FNV-1a. */
std::uint64_t hashOf(const std::string& text) {
  std::uint64_t hash = 14695981039346656037U;
  for (const char c : text) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
  }
  return hash;
}

}  // namespace

std::string setupFingerprint(const MeasuredSetup& setup) {
  std::string text = setup.configuration.value_or("");
  for (const auto& [key, value] : setup.properties) {
    text.append(1, '\0').append(key).append(1, '\0').append(value);
  }
  std::array<char, 17> digits{};
  std::snprintf(digits.data(), digits.size(), "%016llx", static_cast<unsigned long long>(hashOf(text)));
  return digits.data();
}

std::string tuneResultLine(const TuneJob& job, const std::string& fingerprint, const Measurement& measured) {
  Measurement figures = measured;
  // The same job always gives the same line.
  figures.decisionTime = {};
  const json line{{"values", candidateText(job.candidate)},
                  {"recording", job.recording},
                  {"setup", fingerprint},
                  {"figures", measurementAsJson(figures, MeasurementParts::Figures)}};
  return line.dump(-1, ' ', false, json::error_handler_t::replace);
}

TuneResults::TuneResults(std::string path, std::string fingerprint)
    : mPath(std::move(path)), mFingerprint(std::move(fingerprint)) {
  if (std::filesystem::exists(mPath)) {
    read();
  }
  mFile.open(mPath, std::ios::app | std::ios::binary);
  if (!mFile) {
    throw UsageError(mPath + ": cannot be opened for writing");
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
    std::filesystem::resize_file(mPath, complete);
  }
}

void TuneResults::take(const std::string& line) {
  const json document = json::parse(line);
  if (document.at("setup").get<std::string>() != mFingerprint) {
    throw UsageError("made with another --config or --property; name another file with --results");
  }
  mDone[{document.at("values").get<std::string>(), document.at("recording").get<std::string>()}] =
      measurementOf(document.at("figures"));
}

const Measurement* TuneResults::find(const TuneJob& job) const {
  const auto entry = mDone.find({candidateText(job.candidate), job.recording});
  return entry != mDone.end() ? &entry->second : nullptr;
}

void TuneResults::add(const std::string& line) {
  take(line);
  mFile << line << std::endl;
  if (!mFile) {
    throw std::runtime_error(mPath + ": cannot be written");
  }
}

}  // namespace fyn::productionrules
