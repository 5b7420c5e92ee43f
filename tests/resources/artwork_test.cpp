#include "resources/artwork.h"

#include <QGuiApplication>
#include <QPalette>
#include <QPixmap>
#include <cstdlib>
#include <gtest/gtest.h>

namespace kestrel {
namespace {

/// Paints with the palette of the program, which each test sets.
class Artwork : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    static int argc = 1;
    static char name[] = "test";
    static char* argv[] = {name, nullptr};
    static QGuiApplication application(argc, argv);
  }

  static void setText(const QColor& text, const QColor& disabled) {
    QPalette palette;
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, disabled);
    QGuiApplication::setPalette(palette);
  }
};

/// The colours of the pixels that are fully covered.
QList<QColor> solidColors(const QImage& image) {
  QList<QColor> colors;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (const QColor color = image.pixelColor(x, y);
          color.alpha() == 255 && !colors.contains(color))
        colors.append(color);
  return colors;
}

bool hasTransparentCorners(const QImage& image) {
  const int right = image.width() - 1, bottom = image.height() - 1;
  return image.pixelColor(0, 0).alpha() == 0 && image.pixelColor(right, 0).alpha() == 0 &&
         image.pixelColor(0, bottom).alpha() == 0 && image.pixelColor(right, bottom).alpha() == 0;
}

TEST_F(Artwork, ToolbarIconsFollowThePaletteAtTheTimeOfPainting) {
  for (const char* name : {"find", "replaylist", "cleanup", "trash", "history", "log", "open"}) {
    SCOPED_TRACE(name);
    const QIcon icon = toolbarIcon(name);
    for (const QColor& text : {QColor("#111111"), QColor("#eeeeee")}) {
      setText(text, QColor("#808080"));
      const QImage image = icon.pixmap(48).toImage();
      EXPECT_EQ(solidColors(image), QList<QColor>{text});
      EXPECT_TRUE(hasTransparentCorners(image));
      EXPECT_EQ(solidColors(icon.pixmap(48, QIcon::Disabled).toImage()),
                QList<QColor>{QColor("#808080")});
    }
  }
}

TEST_F(Artwork, PlaylistIconsDifferAndAreSharpOnDenseScreens) {
  QList<QImage> seen;
  for (const char* code : {"u", "f", "g", "s", "4"}) {
    SCOPED_TRACE(code);
    const QImage image = playlistIcon(code, 17, 2);
    EXPECT_EQ(image.size(), QSize(34, 34));
    EXPECT_EQ(image.deviceIndependentSize(), QSizeF(17, 17));
    EXPECT_FALSE(solidColors(image).isEmpty());
    EXPECT_TRUE(hasTransparentCorners(image));
    EXPECT_FALSE(seen.contains(image));
    seen.append(image);
  }
}

TEST_F(Artwork, TheApplicationIconLeavesOutTheSpotsInSmallSizes) {
  const QIcon icon = applicationIcon();
  const auto backAt = [&](int size) {
    const QImage image = icon.pixmap(size).toImage();
    EXPECT_TRUE(hasTransparentCorners(image));
    return image.pixelColor(size / 4, size * 49 / 64);
  };
  const QColor chestnut("#b4532a"), spot("#2b3440");
  EXPECT_EQ(backAt(16), chestnut);
  EXPECT_EQ(backAt(24), chestnut);
  EXPECT_EQ(backAt(128), spot);
}

TEST_F(Artwork, UnknownNamesGiveNullImages) {
  EXPECT_TRUE(toolbarIcon("nothing").isNull());
  EXPECT_TRUE(playlistIcon("0", 16).isNull());
  EXPECT_TRUE(playlistIcon("u", 0).isNull());
}

}  // namespace
}  // namespace kestrel
