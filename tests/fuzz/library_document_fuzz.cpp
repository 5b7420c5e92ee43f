// Feeds arbitrary bytes to the library document reader. Beside not crashing, reading in small
// parts must give what reading in one part gives, errors included.
#include <cstdlib>

#include "tests/musicapp/document/described_document.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace kestrel::testing;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (outcome(bytes, 1, onePart) != outcome(bytes, 1, 300)) std::abort();
  return 0;
}
