#include "ui/models/alert.h"

#include <utility>

namespace kestrel::TextSorter {

Alert alertWithMessage(Message message, Message defaultButton,
                       std::optional<Message> alternateButton, std::optional<Message> otherButton,
                       Message informativeText) {
  Alert alert{std::move(message), std::move(informativeText), {std::move(defaultButton)}};
  for (std::optional<Message>* title : {&otherButton, &alternateButton})
    if (*title) alert.buttons.push_back(**std::move(title));
  return alert;
}

}  // namespace kestrel::TextSorter
