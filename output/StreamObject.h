#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "model/Layout.h"

/** The objects of the "streams" array. Each kind of document orders its keys in its own way. */
namespace fyn::productionrules {

/** What all streams of one document have in common. */
struct SceneDocument {
  std::uint32_t sceneNumber = 0;
  /** Milliseconds since 1970. */
  std::int64_t timestamp = 0;
};

/** `scene` is the array of entries, `position` the stream's place in the document. */
nlohmann::ordered_json streamObject(const SceneDocument& document, const Layout& layout, std::size_t position,
                                    FramingMode mode, nlohmann::ordered_json scene);

nlohmann::ordered_json primaryStreamObject(const SceneDocument& document, const Layout& layout,
                                           std::size_t position, FramingMode mode, const std::string& uid,
                                           nlohmann::ordered_json scene);

nlohmann::ordered_json secondaryStreamObject(const SceneDocument& document, const Layout& layout,
                                             std::size_t position, const std::string& uid,
                                             nlohmann::ordered_json scene);

}  // namespace fyn::productionrules
