/// Ties observers of view models to the lifetime of the widgets that show them.
#pragma once

#include <QObject>
#include <functional>

#include "ui/models/observers.h"

namespace kestrel {

/// Calls `changed` at each change of the model, as long as both it and `owner` live.
void observe(QObject* owner, Observers& observers, std::function<void()> changed);

}  // namespace kestrel
