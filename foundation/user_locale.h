/// Which ICU locale stands behind a locale name.
#pragma once

#include <string>
#include <unicode/locid.h>

namespace kestrel {

/// The locale with this name; the user's for an empty one. A user without a locale ("C", as in
/// containers and on build machines) gets plain English: ICU's locale for that case orders texts
/// by code point, upper case first, which no list for people should show.
icu::Locale localeNamed(const std::string& name);

}  // namespace kestrel
