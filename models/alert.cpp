#include "models/alert.h"

#include <utility>

namespace kestrel::TextSorter {

Alert alertWithMessage(std::string message, std::string defaultButton,
                       std::optional<std::string> alternateButton,
                       std::optional<std::string> otherButton, std::string informativeText) {
  Alert alert{Message::verbatim(std::move(message)),
              Message::verbatim(std::move(informativeText)),
              {Message::verbatim(std::move(defaultButton))}};
  for (std::optional<std::string>* title : {&otherButton, &alternateButton})
    if (*title) alert.buttons.push_back(Message::verbatim(**std::move(title)));
  return alert;
}

}  // namespace kestrel::TextSorter
