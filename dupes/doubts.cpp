#include "dupes/doubts.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <string>

#include "foundation/collation.h"
#include "foundation/name_table.h"

namespace kestrel {
namespace {

/// Sorts of versions, in the order of their bits.
constexpr const char* versions[] = {
    Message::literal("live"),     Message::literal("a remix"),      Message::literal("remastered"),
    Message::literal("acoustic"), Message::literal("instrumental"), Message::literal("karaoke"),
    Message::literal("a demo"),   Message::literal("a radio edit"), Message::literal("extended"),
    Message::literal("explicit"), Message::literal("clean"),        Message::literal("mono"),
};
enum Version : std::uint8_t {
  live,
  remix,
  remaster,
  acoustic,
  instrumental,
  karaoke,
  demo,
  radioEdit,
  extended,
  explicitWords,
  clean,
  mono,
};

/// A word or several, in small letters without accents.
struct Form {
  std::string_view words;
  Version version;
};

constexpr Form forms[] = {
    {"live", live},
    {"unplugged live", live},
    {"en vivo", live},
    {"en directo", live},
    {"en direct", live},
    {"en concert", live},
    {"en public", live},
    {"dal vivo", live},
    {"ao vivo", live},
    {"in concert", live},
    {"konzertmitschnitt", live},
    {"liveaufnahme", live},
    {"livemitschnitt", live},
    {"liveversion", live},
    {"en concierto", live},
    {"in concerto", live},
    {"em concerto", live},
    {"remix", remix},
    {"remixed", remix},
    {"remixe", remix},
    {"remixado", remix},
    {"remixada", remix},
    {"remezcla", remix},
    {"remistura", remix},
    {"remixee", remix},
    {"remixato", remix},
    {"remixata", remix},
    {"neu gemischt", remix},
    {"rmx", remix},
    {"mix", remix},
    {"remaster", remaster},
    {"remastered", remaster},
    {"remastering", remaster},
    {"remasterise", remaster},
    {"remasterisee", remaster},
    {"remasterizado", remaster},
    {"remasterizada", remaster},
    {"remasterizacion", remaster},
    {"remasterizacao", remaster},
    {"remasterizzato", remaster},
    {"rimasterizzato", remaster},
    {"rimasterizzata", remaster},
    {"remasterisiert", remaster},
    {"remastert", remaster},
    {"remasterte fassung", remaster},
    {"remasterte version", remaster},
    {"acoustic", acoustic},
    {"akustik", acoustic},
    {"akustisch", acoustic},
    {"akustische", acoustic},
    {"akustikversion", acoustic},
    {"acoustique", acoustic},
    {"acustico", acoustic},
    {"acustica", acoustic},
    {"unplugged", acoustic},
    {"instrumental", instrumental},
    {"instrumentale", instrumental},
    {"instrumentalversion", instrumental},
    {"strumentale", instrumental},
    {"karaoke", karaoke},
    {"karaokeversion", karaoke},
    {"demo", demo},
    {"demos", demo},
    {"demoversion", demo},
    {"demoaufnahme", demo},
    {"maquette", demo},
    {"maqueta", demo},
    {"provino", demo},
    {"demonstracao", demo},
    {"radio edit", radioEdit},
    {"radio version", radioEdit},
    {"radio mix", radioEdit},
    {"radioversion", radioEdit},
    {"radioedit", radioEdit},
    {"versao de radio", radioEdit},
    {"single edit", radioEdit},
    {"version radio", radioEdit},
    {"versione radio", radioEdit},
    {"versao radio", radioEdit},
    {"edicion de radio", radioEdit},
    {"edicao de radio", radioEdit},
    {"radiofassung", radioEdit},
    {"extended", extended},
    {"langversion", extended},
    {"lange version", extended},
    {"lange fassung", extended},
    {"langfassung", extended},
    {"version longue", extended},
    {"rallonge", extended},
    {"rallongee", extended},
    {"version larga", extended},
    {"version extendida", extended},
    {"versione estesa", extended},
    {"versione lunga", extended},
    {"versao estendida", extended},
    {"versao longa", extended},
    {"12 inch", extended},
    {"maxi version", extended},
    {"explicit", explicitWords},
    {"explicite", explicitWords},
    {"explicito", explicitWords},
    {"explicita", explicitWords},
    {"explizit", explicitWords},
    {"explizite", explicitWords},
    {"esplicito", explicitWords},
    {"esplicita", explicitWords},
    {"unzensiert", explicitWords},
    {"clean", clean},
    {"censored", clean},
    {"zensiert", clean},
    {"censure", clean},
    {"censuree", clean},
    {"censurado", clean},
    {"censurada", clean},
    {"censurato", clean},
    {"censurata", clean},
    {"pulita", clean},
    {"limpa", clean},
    {"limpia", clean},
    {"mono", mono},
    {"monofassung", mono},
    {"monoversion", mono},
};

constexpr NameTable<DoubtKind, 5> kindNames{{{DoubtKind::version, "version"},
                                             {DoubtKind::albumAndTime, "albumAndTime"},
                                             {DoubtKind::timesFarApart, "timesFarApart"},
                                             {DoubtKind::sound, "sound"},
                                             {DoubtKind::soundInPart, "soundInPart"}}};

/// The letters from U+00C0 on without their accents, small; a space for what is
/// no letter.
constexpr std::string_view latin =
    "aaaaaaaceeeeiiiidnooooo ouuuuytsaaaaaaaceeeeiiiidnooooo ouuuuyty"
    "aaaaaaccccccccddddeeeeeeeeeegggggggghhhhiiiiiiiiiiiijjkkklllllll"
    "lllnnnnnnnnnoooooooorrrrrrssssssssttttttuuuuuuuuuuuuwwyyyzzzzzzs";
static_assert(latin.size() == 3 * 64);

/// In small letters without accents, with one space before each word and one at
/// the end. Letters of other scripts stay, as parts of words.
void foldInto(std::string_view text, std::string& out) {
  out.assign(1, ' ');
  const auto gap = [&out] {
    if (out.back() != ' ') out.push_back(' ');
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto c = static_cast<unsigned char>(text[i]);
    const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
    if (c >= 'A' && c <= 'Z') {
      out.push_back(static_cast<char>(c + ('a' - 'A')));
    } else if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
      out.push_back(static_cast<char>(c));
    } else if (c >= 0xC3 && c <= 0xC5 && (next & 0xC0) == 0x80) {
      const std::size_t letter = (c - 0xC3U) * 64 + (next - 0x80U);
      const char plain = latin[letter];
      if (plain == ' ')
        gap();
      else
        out.push_back(plain);
      ++i;
    } else if (c == 0xEF && (next == 0xBC || next == 0xBD) && i + 2 < text.size()) {
      // Full width forms stand 0xFEE0 behind those of ASCII.
      const auto third = static_cast<unsigned char>(text[i + 2]);
      const unsigned plain = (next - 0xBCU) * 0x40 + (third & 0x3FU) + 0x20;
      if (plain >= 'A' && plain <= 'Z')
        out.push_back(static_cast<char>(plain + ('a' - 'A')));
      else if ((plain >= 'a' && plain <= 'z') || (plain >= '0' && plain <= '9'))
        out.push_back(static_cast<char>(plain));
      else if (plain >= 0x7F)
        out.append(text, i, 3);
      else
        gap();
      i += 2;
    } else if ((c == 0xCC || c == 0xCD) && (next & 0xC0) == 0x80) {
      ++i;  // an accent that stands by itself
    } else if (c >= 0x80) {
      out.push_back(static_cast<char>(c));
    } else {
      gap();
    }
  }
  gap();
}

/// The forms by the first two letters of their first word.
class Forms {
 public:
  Forms() {
    for (const Form& form : forms) byStart_[startOf(form.words)].push_back(&form);
  }
  [[nodiscard]] std::uint32_t in(std::string_view folded) const {
    std::uint32_t found = 0;
    for (std::size_t at = 0; at + 2 < folded.size(); ++at) {
      if (folded[at] != ' ') continue;
      const std::string_view rest = folded.substr(at + 1);
      for (const Form* form : byStart_[startOf(rest)])
        if (rest.size() > form->words.size() && rest.starts_with(form->words) &&
            rest[form->words.size()] == ' ')
          found |= 1U << form->version;
    }
    return found;
  }

 private:
  static std::size_t startOf(std::string_view words) noexcept {
    return (static_cast<unsigned char>(words[0]) * 32U + static_cast<unsigned char>(words[1])) %
           1024U;
  }
  std::array<std::vector<const Form*>, 1024> byStart_;
};

/// Further apart than the same recording comes on different albums.
constexpr std::int64_t secondsOfOneRecording = 2;
/// What another pressing adds to the silence at the end, and no other version
/// is as close.
constexpr std::int64_t secondsOfOneSong = 10;

std::int64_t secondsFarApart(std::int64_t shortest, const GroupingOptions& grouping) {
  if (grouping.toleranceSeconds > 0) return grouping.toleranceSeconds;
  return std::max(secondsOfOneSong, shortest / 10);
}

}  // namespace

std::string_view nameOf(DoubtKind kind) noexcept { return nameOf(kindNames, kind); }

std::uint32_t versionsIn(std::string_view text) {
  static const Forms known;
  thread_local std::string folded;
  foldInto(text, folded);
  return known.in(folded);
}

std::uint32_t DoubtFinder::versionsOf(const TrackRecord& record) {
  const MediaItem& item = record.item();
  if (!item.album.sameAs(album_.text)) album_ = {item.album, versionsIn(item.album.view())};
  return versionsIn(item.title.view()) | album_.versions | versionsIn(record.fileName());
}

std::vector<Doubt> DoubtFinder::doubtsOf(std::span<const TrackRecord* const> members,
                                         const Likeness& leastAlike) {
  std::vector<Doubt> doubts;
  std::uint32_t some = 0, all = ~0U;
  std::int64_t shortest = std::numeric_limits<std::int64_t>::max(), longest = 0;
  const MediaItem* withAlbum = nullptr;
  bool differentAlbums = false;
  for (const TrackRecord* member : members) {
    const MediaItem& item = member->item();
    const std::uint32_t has = versionsOf(*member);
    some |= has;
    all &= has;
    if (item.totalTime > 0) {
      shortest = std::min(shortest, roundedSeconds(item.totalTime));
      longest = std::max(longest, roundedSeconds(item.totalTime));
    }
    if (item.album.view().empty()) continue;
    if (!withAlbum) withAlbum = &item;
    differentAlbums =
        differentAlbums || (item.album != withAlbum->album &&
                            !sameIgnoringCase(item.album.view(), withAlbum->album.view()));
  }
  for (std::uint32_t left = some & ~all, bit = 0; left; left >>= 1, ++bit)
    if (left & 1U) doubts.push_back({DoubtKind::version, versions[bit], 0});
  if (leastAlike.kind == Likeness::Kind::different)
    doubts.push_back({DoubtKind::sound, {}, 0, leastAlike});
  if (leastAlike.kind == Likeness::Kind::sameInPart)
    doubts.push_back({DoubtKind::soundInPart, {}, 0, leastAlike});
  if (longest == 0) return doubts;
  const std::int64_t apart = longest - shortest;
  if (differentAlbums && apart > secondsOfOneRecording)
    doubts.push_back({DoubtKind::albumAndTime, {}, apart});
  if (apart > secondsFarApart(shortest, grouping_))
    doubts.push_back({DoubtKind::timesFarApart, {}, apart});
  return doubts;
}

Message explain(const Doubt& doubt) {
  switch (doubt.kind) {
    case DoubtKind::version:
      return Message::tr("not all are %1").arg(Message::tr(doubt.version.data()));
    case DoubtKind::albumAndTime:
      return Message::tr("different albums, and %Ln seconds apart",
                         "different albums, and %Ln second apart", doubt.seconds);
    case DoubtKind::timesFarApart:
      return Message::tr("playing times are %Ln seconds apart",
                         "playing times are %Ln second apart", doubt.seconds);
    case DoubtKind::sound:
      return Message::tr("sounds different: only %1 % alike").arg(doubt.sound.percent);
    case DoubtKind::soundInPart:
      return explainPart(doubt.sound);
  }
  return {};
}

}  // namespace kestrel
