#include "foundation/content_hash.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace kestrel {

struct ContentHash::State {
  XXH3_state_t state;
};

ContentHash::ContentHash() : state_(std::make_unique<State>()) {
  XXH3_128bits_reset(&state_->state);
}
ContentHash::~ContentHash() = default;
ContentHash::ContentHash(ContentHash&&) noexcept = default;
ContentHash& ContentHash::operator=(ContentHash&&) noexcept = default;

void ContentHash::add(std::string_view bytes) noexcept {
  XXH3_128bits_update(&state_->state, bytes.data(), bytes.size());
}

std::string ContentHash::value() const {
  XXH128_canonical_t bytes;
  XXH128_canonicalFromHash(&bytes, XXH3_128bits_digest(&state_->state));
  return {reinterpret_cast<const char*>(bytes.digest), sizeof bytes.digest};
}

}  // namespace kestrel
