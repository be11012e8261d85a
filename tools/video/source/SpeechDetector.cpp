#include "tools/video/source/SpeechDetector.h"

#include <webrtc/modules/audio_processing/include/audio_processing.h>
#include <webrtc/modules/interface/module_common_types.h>

#include <algorithm>

namespace fyn::productionrules::video {

namespace {

constexpr std::size_t kBlocks = 50;
// Of speech nearly all blocks have a voice; of noise an eighth, with stretches up to a third.
constexpr std::size_t kVoicesOfSpeech = 30;

}  // namespace

SpeechDetector::SpeechDetector() : mProcessing(webrtc::AudioProcessing::Create()) {
  mProcessing->voice_detection()->set_likelihood(webrtc::VoiceDetection::kVeryLowLikelihood);
  mProcessing->voice_detection()->Enable(true);
}

SpeechDetector::~SpeechDetector() = default;

void SpeechDetector::hear(const std::array<std::int16_t, kBlock>& block) {
  webrtc::AudioFrame frame;
  frame.UpdateFrame(0, 0, block.data(), block.size(), kRate, webrtc::AudioFrame::kUndefined,
                    webrtc::AudioFrame::kVadUnknown);
  mProcessing->ProcessStream(&frame);
  mVoices.push_back(mProcessing->voice_detection()->stream_has_voice());
  if (mVoices.size() > kBlocks) {
    mVoices.pop_front();
  }
}

bool SpeechDetector::isSpeech() const {
  return static_cast<std::size_t>(std::count(mVoices.begin(), mVoices.end(), true)) >= kVoicesOfSpeech;
}

}  // namespace fyn::productionrules::video
