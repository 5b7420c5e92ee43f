// Looser matching, what files are asked for, and how rows are coloured and sorted.

#include <QCheckBox>
#include <QLabel>
#include <QRegularExpression>
#include <QToolButton>
#include <algorithm>
#include <map>

#include "app/controller/criteria.h"
#include "app/parts/library_title.h"
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
  /// The library with an accent more in the name of a track that duplicates another one, and which.
  [[nodiscard]] std::pair<QString, std::string> withAccent() const {
    Searched kestrel(library_);
    int row = 0;
    // One whose name stands in the document as it is.
    while (kestrel.text(row, "tName").contains(QRegularExpression("[^A-Za-z ]"))) ++row;
    const ResultTrack& one = kestrel.rows().track(row);
    std::string hexpid(one.record->value(TrackKey::hexpid).text());
    const std::string name(one.record->value(TrackKey::tName).text());
    std::string text = TemporaryFolder::read(library_.toStdString());
    const auto track = text.rfind("<dict>", text.find("<string>" + hexpid + "</string>"));
    const auto vowel =
        text.find_first_of("aeou", text.find("<string>" + name + "</string>", track) + 8);
    text.replace(vowel, 1, std::string(1, text[vowel]) + "\xCC\x81");
    return {home_.write("Music/Accents.xml", text), std::move(hexpid)};
  }
  static std::optional<std::uint32_t> rowOf(Running& kestrel, const std::string& hexpid) {
    const auto content = kestrel.delegate().content();
    for (std::uint32_t row = 0; row < content.size(); ++row)
      if (content[row].record->value(TrackKey::hexpid).text() == hexpid) return row;
    return std::nullopt;
  }
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
    const auto [library, accented] = withAccent();
    Searched kestrel(library);
    AppDelegate& delegate = kestrel.delegate();
    const auto isFound = [&] { return !delegate.isBusy() && rowOf(kestrel, accented); };
    QVERIFY(!isFound());
    delegate.savePreset("strict");
    kestrel.find<QToolButton>("Looser: accents, “feat.”…")->click();
    auto* box = kestrel.find<QCheckBox>("Accents");
    // What it would do is said before it is ticked.
    QTRY_VERIFY(!box->toolTip().isEmpty());
    box->click();
    QTRY_VERIFY(isFound());
    kestrel.table().selectInMiddle(kestrel.rows().rowOfContent(*rowOf(kestrel, accented)));
    auto* matched = kestrel.window().findChild<QLabel*>("whyMatched");
    QTRY_VERIFY2(matched->text().contains("assed over: Accents"), qPrintable(matched->text()));
    QVERIFY2(!matched->text().contains("tName"), qPrintable(matched->text()));

    delegate.savePreset("loose");
    QVERIFY(delegate.usePreset(delegate.presets()[0]));
    QTRY_VERIFY(!isFound() && !delegate.isBusy());
    QTRY_VERIFY(!box->isChecked());
    QVERIFY(delegate.usePreset(delegate.presets()[1]));
    QTRY_VERIFY(isFound());
  }

  void theRuleWithCoverAsksTheFiles() {
    Searched kestrel(library_);
    kestrel.preferences().set(settings::filterMatrixButton,
                              static_cast<std::int64_t>(KeeperRule::withCover));
    kestrel.delegate().rulesChanged();
    QVERIFY(kestrel.becomesIdle());
    const FileService& files = kestrel.delegate().process().with.files;
    std::map<std::int32_t, std::pair<int, int>> copies;  // here, with and without a cover
    std::map<std::int32_t, bool> keepers;
    const auto content = kestrel.delegate().content();
    for (std::uint32_t row = 0; row < content.size(); ++row) {
      const TrackRecord& record = *content[row].record;
      if (record.availability() != FileAvailability::reachable) continue;
      const bool cover = coverOf(record.location(), files).has_value();
      auto& [with, without] = copies[content[row].tGroupID];
      ++(cover ? with : without);
      if (kestrel.delegate().groups().isKeeper(row)) keepers[content[row].tGroupID] = cover;
    }
    std::size_t known = 0;
    for (const auto& [group, counts] : copies) {
      if (counts.first + counts.second < 2) continue;
      ++known;
      const std::string reason = kestrel.delegate().reasonOf(group).english();
      QVERIFY2(reason.find("nothing is known") == std::string::npos, reason.c_str());
      QVERIFY2(reason.find("cover") != std::string::npos, reason.c_str());
      if (counts.first > 0) QVERIFY2(keepers[group], reason.c_str());
    }
    QVERIFY(known > 0);
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

  void theSoundColumnGoesWithTheLibraryAndSaysWhatWasNotCompared() {
    const QString other =
        home_.write("Music/Other.xml", TemporaryFolder::read(library_.toStdString()));
    Searched kestrel(library_);
    const int sound = columnOf("tSound");
    const auto isShown = [&] { return !kestrel.table().isColumnHidden(sound); };
    QVERIFY(!isShown());
    for (QAction* action : kestrel.window().findChildren<QAction*>())
      if (action->text().remove('&') == "Compare the Sound" && action->toolTip().contains("all"))
        action->trigger();
    QVERIFY(kestrel.becomesIdle());
    QTRY_VERIFY(isShown());
    std::size_t told = 0;
    for (int row = 0; row < kestrel.rows().rowCount(); ++row) {
      const ResultTrack& track = kestrel.rows().track(row);
      if (track.record->availability() == FileAvailability::reachable ||
          kestrel.delegate().groups().isKeeper(kestrel.rows().contentRow(row)))
        continue;
      ++told;
      const QModelIndex cell = kestrel.rows().index(row, sound);
      QCOMPARE(cell.data().toString(), QStringLiteral("no file"));
      const QString tip = cell.data(Qt::ToolTipRole).toString();
      QVERIFY2(tip.startsWith("Its file is not here."), qPrintable(tip));
      kestrel.table().selectInMiddle(row);
      auto* words = kestrel.find<QLabel>("How many rules agree");
      QTRY_VERIFY2(words->text().contains(": its file is not here"), qPrintable(words->text()));
    }
    QVERIFY(told > 0);
    kestrel.open(other);
    QVERIFY(!isShown());
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
    kestrel.clickHeader("realTime");
    kestrel.clickHeader("realTime");
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
