#include "ui/custom_views.h"

#include "platform/preferences.h"
#include "platform/settings.h"

namespace kestrel {

bool KSWindow::keyDown(int keyCode, Preferences& preferences) {
  if (keyCode == escapeKeyCode) preferences.set(settings::cancelGetDupes, true);
  return true;
}

}  // namespace kestrel
