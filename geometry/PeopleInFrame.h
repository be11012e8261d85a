#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <vector>

#include "model/FynHead.h"
#include "model/Layout.h"
#include "model/MLData.h"

/** Questions about the persons of a vision result, as camera `camId` sees them. */
namespace fyn::productionrules {

/** Whether the head of a person who is not in `framed` lies strictly inside `frame` (camera pixels). For
 * hosts. */
bool isAdditionalHeadsPresentInFrame(const Rect& frame, const std::shared_ptr<MLData>& mlData,
                                     const std::vector<std::shared_ptr<FynHead>>& framed,
                                     std::uint32_t camId);

/** Whether the speaker's head with its buffer lies strictly inside the first frame's source. */
bool isSpeakerFramedAlready(const std::shared_ptr<FynHead>& speaker, const std::shared_ptr<Layout>& layout,
                            std::uint32_t camId);

/** The persons who speak, in order. */
std::vector<std::shared_ptr<FynHead>> getActiveSpeakers(const std::shared_ptr<MLData>& mlData,
                                                        std::uint32_t camId);

/** The head ids of the persons; an error is logged for each person without a head, in their order. For
 * hosts, as the three below. */
std::set<std::int64_t> convertSetVisionFaceToSetIds(const std::vector<std::shared_ptr<FynHead>>& persons,
                                                    std::uint32_t camId);

/** The same; the errors are logged in the order of person ids. */
std::set<std::int64_t> convertSetVisionFaceToSetIds(const std::set<std::shared_ptr<FynHead>>& persons,
                                                    std::uint32_t camId);

/** The ids of the persons. */
std::set<std::int64_t> convertSetVisionFaceToSetFynIds(const std::vector<std::shared_ptr<FynHead>>& persons);
std::set<std::int64_t> convertSetVisionFaceToSetFynIds(const std::set<std::shared_ptr<FynHead>>& persons);

}  // namespace fyn::productionrules
