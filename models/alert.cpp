#include "models/alert.h"

#include <utility>

namespace kestrel::TextSorter {

Alert alertWithMessage(std::string message, std::string defaultButton,
                       std::optional<std::string> alternateButton,
                       std::optional<std::string> otherButton, std::string informativeText) {
  Alert alert{std::move(message), std::move(informativeText), {std::move(defaultButton)}};
  if (otherButton) alert.buttons.push_back(*std::move(otherButton));
  if (alternateButton) alert.buttons.push_back(*std::move(alternateButton));
  return alert;
}

}  // namespace kestrel::TextSorter
