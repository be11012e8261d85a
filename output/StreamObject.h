#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "model/Layout.h"
#include "output/OrderedObject.h"

/** The objects of the "streams" array. Each kind of document orders its keys in its own way. */
namespace fyn::productionrules {

/** What all streams of one document have in common. */
struct SceneDocument {
  std::uint32_t sceneNumber = 0;
  /** Milliseconds since 1970. */
  std::int64_t timestamp = 0;
};

/** `scene` has the entries, `position` the stream's place in the document. */
JsonText streamObject(const SceneDocument& document, const Layout& layout, std::size_t position,
                      FramingMode mode, const std::vector<JsonText>& scene);

JsonText primaryStreamObject(const SceneDocument& document, const Layout& layout, std::size_t position,
                             FramingMode mode, const std::string& uid, const std::vector<JsonText>& scene);

JsonText secondaryStreamObject(const SceneDocument& document, const Layout& layout, std::size_t position,
                               const std::string& uid, const std::vector<JsonText>& scene);

}  // namespace fyn::productionrules
