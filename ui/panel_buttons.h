/// Where the two buttons of a confirmation panel stand. The panel has two forms, for playlists and
/// for everything; in both the buttons abut and end at the same right edge.
#pragma once

#include "ui/rect.h"

namespace kestrel {

/// A button, as far as its place goes; the origin is the panel's lower left.
struct PanelButton {
  Rect frame;
};

}  // namespace kestrel

namespace kestrel::TextSorter {

inline void adjustAltButtonForPlaylist(PanelButton& button) {
  button.frame = {{220, 13}, {132, 32}};
}
inline void adjustDefButtonForPlaylist(PanelButton& button) {
  button.frame = {{352, 13}, {132, 32}};
}
inline void adjustAltButtonForAll(PanelButton& button) { button.frame = {{292, 13}, {96, 32}}; }
inline void adjustDefButtonForAll(PanelButton& button) { button.frame = {{388, 13}, {96, 32}}; }

}  // namespace kestrel::TextSorter
