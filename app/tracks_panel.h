/// The tracks panel on the screen: its titles, and the table of the non-keepers next to their
/// keepers.
#pragma once

class QWidget;

namespace kestrel {

class AppDelegate;
struct ReplaylistWindowReferences;

/// Shown and hidden by `ReplaylistControl::toggleTracksPanel`.
QWidget* newTracksPanel(AppDelegate& delegate, ReplaylistWindowReferences& window);

}  // namespace kestrel
