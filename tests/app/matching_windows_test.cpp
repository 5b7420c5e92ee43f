// Looser matching, what files are asked for, and how rows are coloured and sorted.

#include <QCheckBox>
#include <QLabel>
#include <QToolButton>
#include <algorithm>
#include <map>

#include "app/controller/criteria.h"
#include "app/library_title.h"
#include "app/shortcut_help.h"
#include "decisions/decisions.h"
#include "musicapp/audio/cover.h"
#include "platform/settings.h"
#include "tests/app/running_program.h"
#include "tests/app/window_tests.h"

namespace kestrel::testing {

class MatchingWindowsTest : public QObject {
  Q_OBJECT

 private:
  /// The library with other names for tracks that duplicate another one: an accent more.
  [[nodiscard]] QString withAccents() const {
    Searched kestrel(library_);
    const ResultTrack& one = kestrel.rows().track(0);
    const std::string hexpid(one.record->value(TrackKey::hexpid).text());
    const std::string name(one.record->value(TrackKey::tName).text());
    std::string text = TemporaryFolder::read(library_.toStdString());
    const auto at = text.find("<string>" + name + "</string>",
                              text.rfind("<dict>", text.find("<string>" + hexpid + "</string>")));
    auto vowel = text.find_first_of("aeou", at + 8);
    text.replace(vowel, 1,
                 text[vowel] == 'a'   ? "á"
                 : text[vowel] == 'e' ? "é"
                 : text[vowel] == 'o' ? "ó"
                                      : "ú");
    return home_.write("Music/Accents.xml", text);
  }
  static std::size_t groups(Running& kestrel) { return kestrel.delegate().summary().groups; }
  static QImage pictureOf(Running& kestrel, int row, std::string_view column) {
    ReviewTableView& table = kestrel.table();
    table.selectionModel()->clear();
    table.scrollTo(kestrel.rows().index(row, columnOf(column)));
    const QRect cell = table.visualRect(kestrel.rows().index(row, columnOf(column)));
    return table.viewport()->grab(cell).toImage();
  }
  /// Of those pixels that have a colour at all, the hue that comes most often; nothing of grey.
  static std::optional<int> hueOf(const QImage& picture) {
    std::map<int, int> hues;
    for (int y = 0; y < picture.height(); ++y)
      for (int x = 0; x < picture.width(); ++x)
        if (const QColor color = picture.pixelColor(x, y); color.hsvSaturation() > 110)
          ++hues[color.hsvHue() / 30];
    const auto most = std::max_element(
        hues.begin(), hues.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
    return most == hues.end() ? std::nullopt : std::optional(most->first * 30);
  }

 private Q_SLOTS:
  void init() { home_.use(QTest::currentTestFunction()); }

  void looserMatchingFindsMoreAndIsKeptInPresets() {
    Searched kestrel(withAccents());
    AppDelegate& delegate = kestrel.delegate();
    const std::size_t tracks = delegate.summary().tracks;
    delegate.savePreset("strict");
    auto* fold = kestrel.find<QToolButton>("Looser: accents, “feat.”…");
    QVERIFY(!fold->isChecked());
    fold->click();
    auto* box = kestrel.find<QCheckBox>("Accents");
    // What it would do is said before it is ticked.
    QTRY_VERIFY(!box->toolTip().isEmpty());
    box->click();
    QTRY_COMPARE(delegate.summary().tracks, tracks + 1);
    QVERIFY(kestrel.becomesIdle());
    const auto content = delegate.content();
    const auto changed = std::find_if(content.begin(), content.end(), [](const ResultTrack& row) {
      return row.record->value(TrackKey::tName).text().find('\xC3') != std::string_view::npos;
    });
    QVERIFY(changed != content.end());
    kestrel.table().selectInMiddle(
        kestrel.rows().rowOfContent(static_cast<std::uint32_t>(changed - content.begin())));
    auto* matched = kestrel.window().findChild<QLabel*>("whyMatched");
    QTRY_VERIFY2(matched->text().contains("assed over: Accents"), qPrintable(matched->text()));

    delegate.savePreset("loose");
    QVERIFY(delegate.usePreset(delegate.presets()[0]));
    QVERIFY(kestrel.becomesIdle());
    QTRY_COMPARE(delegate.summary().tracks, tracks);
    QTRY_VERIFY(!box->isChecked());
    QVERIFY(delegate.usePreset(delegate.presets()[1]));
    QTRY_COMPARE(delegate.summary().tracks, tracks + 1);
    QVERIFY(kestrel.becomesIdle());
  }

  void theRuleWithCoverAsksTheFiles() {
    Searched kestrel(library_);
    kestrel.preferences().set(settings::filterMatrixButton,
                              static_cast<std::int64_t>(KeeperRule::withCover));
    kestrel.delegate().rulesChanged();
    QVERIFY(kestrel.becomesIdle());
    const FileService& files = kestrel.delegate().process().with.files;
    std::size_t decided = 0;
    std::map<std::int32_t, std::pair<int, int>> kept;  // copies with and without, where both are
    std::map<std::int32_t, std::optional<bool>> keeper;
    const auto content = kestrel.delegate().content();
    for (std::uint32_t row = 0; row < content.size(); ++row) {
      const TrackRecord& record = *content[row].record;
      if (record.availability() != FileAvailability::reachable) continue;
      const bool cover = coverOf(record.location(), files).has_value();
      ++(cover ? kept[content[row].tGroupID].first : kept[content[row].tGroupID].second);
      if (kestrel.delegate().groups().isKeeper(row)) keeper[content[row].tGroupID] = cover;
    }
    for (const auto& [group, counts] : kept) {
      if (counts.first == 0 || counts.second == 0) continue;
      ++decided;
      QVERIFY2(keeper[group].value_or(false), qPrintable(QString::number(group)));
    }
    QVERIFY(decided > 0);
  }

  void theSoundIsComparedAndCanBeStopped() {
    Searched kestrel(library_);
    AppDelegate& delegate = kestrel.delegate();
    HeardSounds heard;
    bool isTold = false;
    const auto done = [&](const HeardSounds& what) {
      heard = what;
      isTold = true;
    };
    QVERIFY(!delegate.knowsSounds());
    QVERIFY(delegate.compareSounds({}, done));
    QCOMPARE(delegate.activity(), Activity::listening);
    delegate.cancel();
    QVERIFY(kestrel.becomesIdle());
    QTRY_VERIFY(isTold);
    // All are heard the next time, and a command of the user is refused meanwhile.
    QVERIFY(delegate.compareSounds({}, done));
    const std::uint32_t first = 0;
    QVERIFY(!delegate.setTicks({&first, 1}, true));
    QVERIFY(kestrel.becomesIdle());
    QVERIFY(!heard.stopped && delegate.knowsSounds());
    std::size_t compared = 0;
    for (const ResultTrack& row : delegate.content())
      compared += row.sound.kind != Likeness::Kind::unknown ? 1 : 0;
    QCOMPARE(heard.compared, compared);
    // Another keeper: it is beside nothing, whatever it was beside before.
    QVERIFY(delegate.makeOnlyKeeper(first));
    QCOMPARE(delegate.content()[first].sound.kind, Likeness::Kind::unknown);
    QVERIFY(delegate.refresh());
    QVERIFY(kestrel.becomesIdle());
    QVERIFY2(!delegate.knowsSounds(), "files may be others now");
  }

  void statesHaveColoursUnlessTheyAreOff() {
    Searched kestrel(library_);
    std::map<FileAvailability, int> rows;
    for (int row = 0; row < kestrel.rows().rowCount(); ++row)
      rows.emplace(kestrel.rows().track(row).record->availability(), row);
    struct Case {
      FileAvailability state;
      std::optional<int> hue;
    };
    for (const Case& one : {Case{FileAvailability::cloud, 210}, Case{FileAvailability::missing, 0},
                            Case{FileAvailability::reachable, std::nullopt}}) {
      if (!rows.contains(one.state)) continue;
      const int row = rows.at(one.state);
      kestrel.preferences().set(settings::colorsByState, true);
      kestrel.table().reloadPalette();
      QVERIFY2(hueOf(pictureOf(kestrel, row, "tArtist")) == one.hue,
               qPrintable(QString::number(int(one.state))));
      kestrel.preferences().set(settings::colorsByState, false);
      kestrel.table().reloadPalette();
      QVERIFY(!hueOf(pictureOf(kestrel, row, "tArtist")));
    }
    QVERIFY(rows.contains(FileAvailability::cloud));
  }

  void aSortByColumnOutlivesReading() {
    Searched kestrel(library_, true);
    kestrel.clickHeader("tTime");
    kestrel.clickHeader("tTime");
    QVERIFY(kestrel.becomesIdle());
    QVERIFY(!kestrel.rows().isGrouped());
    const auto order = [&] {
      std::vector<std::uint64_t> tracks;
      for (int row = 0; row < kestrel.rows().rowCount(); ++row)
        tracks.push_back(kestrel.rows().track(row).record->item().persistentID);
      return tracks;
    };
    const auto before = order();
    QTest::keyClick(&kestrel.window(), Qt::Key_F5);
    QVERIFY(kestrel.becomesIdle());
    QTRY_VERIFY(!kestrel.rows().isGrouped());
    QCOMPARE(order(), before);
    kestrel.search();
    QVERIFY2(kestrel.rows().isGrouped(), "another search shows its groups");
  }

  void helpNamesEveryKey() {
    Searched kestrel(library_);
    QTest::keyClick(&kestrel.window(), Qt::Key_F1);
    auto* help = kestrel.window().findChild<ShortcutHelp*>();
    QVERIFY(help && help->isVisible());
    QStringList texts;
    for (const QLabel* label : help->findChildren<QLabel*>()) texts << label->text();
    for (const QAction* action : kestrel.window().findChildren<QAction*>())
      if (!action->shortcut().isEmpty() && action->text().size() > 0)
        QVERIFY2(texts.join('\n').contains(action->shortcut().toString(QKeySequence::NativeText)),
                 qPrintable(action->text()));
    QVERIFY(!texts.join(' ').contains('&'));
    QTest::keyClick(help, Qt::Key_Escape);
  }

  void aLibraryIsOneHoweverItWasOpened() {
    const auto same = [](const char* one, const char* other) { return isSameLibrary(one, other); };
    QVERIFY(same("strawberry:/home/a/strawberry.db", "file:///home/a/strawberry.db"));
    QVERIFY(same("/home/a/Library.xml", "file:///home/a/Library.xml"));
    QVERIFY(!same("/home/a/Library.xml", "/home/b/Library.xml"));
    QVERIFY(!same("mpd://localhost:6600", "mpd://music.lan:6600"));
    QVERIFY(same("rhythmbox:", "rhythmbox:"));
  }

 private:
  PrivateHome home_;
  const QString library_ = home_.library();
};
const WindowTest<MatchingWindowsTest> matchingWindows("matching_windows");

}  // namespace kestrel::testing

#include "matching_windows_test.moc"
