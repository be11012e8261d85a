#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>

namespace webrtc {
class AudioProcessing;
}

namespace fyn::productionrules::video {

/** Tells speech from silence and noise. A noise that begins passes for speech until it has gone on for two
 * seconds. */
class SpeechDetector {
 public:
  /** Samples per second, and in a block of 10 ms. */
  static constexpr int kRate = 16000;
  static constexpr std::size_t kBlock = kRate / 100;

  SpeechDetector();
  ~SpeechDetector();
  SpeechDetector(const SpeechDetector&) = delete;
  SpeechDetector& operator=(const SpeechDetector&) = delete;

  /** The next block of samples, one channel. */
  void hear(const std::array<std::int16_t, kBlock>& block);

  /** Whether most of the latest half second was speech. */
  bool isSpeech() const;

 private:
  std::unique_ptr<webrtc::AudioProcessing> mProcessing;
  /** The latest blocks: which have a voice. */
  std::deque<bool> mVoices;
};

}  // namespace fyn::productionrules::video
