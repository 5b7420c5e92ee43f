#include "foundation/user_locale.h"

#include <string_view>

namespace kestrel {

icu::Locale localeNamed(const std::string& name) {
  icu::Locale locale = name.empty() ? icu::Locale::getDefault() : icu::Locale(name.c_str());
  if (std::string_view(locale.getVariant()) == "POSIX") return {"en"};
  return locale;
}

}  // namespace kestrel
