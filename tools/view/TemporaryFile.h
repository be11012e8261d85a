#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace fyn::productionrules {

/** A file without a name, which goes when this does. Reading at any place may go on while another thread
 * appends. */
class TemporaryFile {
 public:
  /** Raises std::runtime_error when there is none to be had. */
  TemporaryFile();
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /** Raises std::runtime_error when it cannot be written (a full disk); the next call then begins at the same
   * place. */
  void append(const std::string& text);

  /** Up to `most` bytes from `offset`; "" when it cannot be read. */
  std::string read(std::int64_t offset, std::size_t most) const;

 private:
  const int mFile;
  std::int64_t mSize = 0;
};

}  // namespace fyn::productionrules
