/// Points and rectangles of a user interface, in points.
#pragma once

namespace kestrel {

struct Point {
  double x = 0, y = 0;
  friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
  double width = 0, height = 0;
  friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
  Point origin;
  Size size;
  friend bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace kestrel
