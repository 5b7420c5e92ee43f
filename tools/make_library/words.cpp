#include "tools/make_library/words.h"

#include <array>

namespace kestrel::make_library {
namespace {

using std::string_view;

// English
constexpr auto kEnAdjectives = std::to_array<string_view>(
    {"Silver",   "Hollow",   "Crooked", "Quiet",   "Burning", "Amber",  "Distant",  "Paper",
     "Velvet",   "Northern", "Broken",  "Second",  "Salted",  "Lonely", "Electric", "Wooden",
     "Golden",   "Restless", "Slow",    "Painted", "Hidden",  "Frozen", "Borrowed", "Gentle",
     "Midnight", "Empty",    "Wild",    "Copper",  "Last",    "Rusty",  "Tender",   "Spare"});
constexpr auto kEnNouns = std::to_array<string_view>(
    {"River",   "Lantern",  "Harbour", "Window",   "Orchard", "Beacon",  "Feather", "Mirror",
     "Thunder", "Garden",   "Letter",  "Mountain", "Candle",  "Sparrow", "Station", "Ocean",
     "Kitchen", "Engine",   "Shadow",  "Meadow",   "Clock",   "Heron",   "Ladder",  "Island",
     "Bridge",  "Whistle",  "Kettle",  "Signal",   "Winter",  "Sailor",  "Tower",   "Valley",
     "Needle",  "Fountain", "Pilot",   "Anchor",   "Blanket", "Railway", "Pebble",  "Comet"});
constexpr auto kEnPlaces = std::to_array<string_view>(
    {"Marrowdale", "Port Ellery", "Hexcombe", "Little Thrane", "Oskerby", "Windlow", "Calder Foss",
     "St. Wenna", "Tallow Bay", "New Ardmoor"});
constexpr auto kEnGiven = std::to_array<string_view>(
    {"Mara", "Edwin", "Tilda", "Jory", "Nell", "Casper", "Ione", "Rufus", "Wren", "Hollis",
     "Odette", "Barnaby", "Freya", "Lyle", "Sabine", "Quentin"});
constexpr auto kEnFamilyStarts =
    std::to_array<string_view>({"Hather", "Bram", "Wold", "Thistle", "Carr", "Pem", "Ash", "Quill",
                                "Marsh", "Dun", "Fen", "Larken", "Orm", "Stave", "Tarn", "Veld"});
constexpr auto kEnFamilyEnds = std::to_array<string_view>(
    {"wick", "ley", "combe", "ton", "shaw", "by", "worth", "mere", "gate", "holt", "stow", "den"});
constexpr auto kEnPeople = std::to_array<string_view>({"%g %f", "%g %f", "%g %g %f", "%g & %g %f"});
constexpr auto kEnBands = std::to_array<string_view>(
    {"The %a %ns", "%n & the %ns", "%f/%f", "The %f Quartet", "%a %n Club", "DJ %f", "%f's %a %n"});
constexpr auto kEnSongs = std::to_array<string_view>(
    {"%a %n, %a %n", "The %n and the %a %n", "%a %n of %p", "%a %n in %p", "Don't Wake the %a %n",
     "%a/%a %n", "%a %n (Part %d)", "Every %n Has Its %a %n", "%d %ns & the %n", "“%a” %n %d",
     "Who Stole My %a %n?", "%g's %a %n", "%n <3 %a %n", "%a as the %n of %p"});
constexpr auto kEnAlbums = std::to_array<string_view>(
    {"%a %ns", "The %n of %p", "%n & %n", "Songs from the %a %n", "Live at %p", "%n: %n",
     "The Best of the %ns, Vol. %d", "%a %n [Deluxe Edition]"});

// French
constexpr auto kFrAdjectives =
    std::to_array<string_view>({"fragile", "sauvage", "tranquille", "étrange", "fidèle", "célèbre",
                                "immobile", "sévère", "jeune", "tiède", "pâle", "drôle"});
constexpr auto kFrNouns = std::to_array<string_view>(
    {"la forêt", "le café", "l’été", "la fenêtre", "le théâtre", "la poussière", "l’hôtel",
     "le garçon", "la rivière", "l’étoile", "le château", "la lumière", "l’œuvre", "le goéland",
     "la forêt d’hiver", "le maïs"});
constexpr auto kFrPlaces = std::to_array<string_view>(
    {"Vaubrèze", "Saint-Élorn", "Montcarelle", "Île d’Arsoul", "Bois-Ménil", "Fougerêts"});
constexpr auto kFrGiven = std::to_array<string_view>(
    {"Zoé", "Théo", "Élodie", "Anaïs", "Gaël", "Noémie", "René", "Loïc", "Maëlle", "Aurèle"});
constexpr auto kFrFamilyStarts = std::to_array<string_view>(
    {"Mar", "Bel", "Châte", "Dur", "Fon", "Lau", "Mont", "Ro", "Vau", "Tré"});
constexpr auto kFrFamilyEnds =
    std::to_array<string_view>({"chand", "lier", "ville", "mère", "çois", "guët", "rand", "tôt"});
constexpr auto kFrBands =
    std::to_array<string_view>({"Les Frères %f", "%f & Cie", "Orchestre de %p"});
constexpr auto kFrSongs =
    std::to_array<string_view>({"%n et %n de %p", "Sous %n à %p", "Rue %f, nº %d", "%n, %n",
                                "À %p, %n est %a", "Où est %n, %g ?", "Ça, c’est %n n° %d"});
constexpr auto kFrAlbums = std::to_array<string_view>({"%n et %n", "De %p à %p", "Cahier %d : %n"});

// German
constexpr auto kDeAdjectives = std::to_array<string_view>(
    {"kühl", "müde", "weiß", "schön", "spät", "früh", "süß", "groß", "fröhlich", "böse"});
constexpr auto kDeNouns = std::to_array<string_view>(
    {"Straße", "Mühle", "Träume", "Brücke", "Vögel", "Grüße", "Nächte", "Wälder", "Flüsse",
     "Häuser", "Stürme", "Schlüssel", "Füße", "Gärten", "Äpfel", "Öfen"});
constexpr auto kDePlaces = std::to_array<string_view>(
    {"Grünbrück", "Oberstäd", "Kaltwörth", "Großlünen", "Mösbach", "Wölfenau"});
constexpr auto kDeGiven = std::to_array<string_view>(
    {"Jörg", "Käthe", "Günther", "Bärbel", "Sören", "Lotte", "Anton", "Frieda", "Götz", "Änne"});
constexpr auto kDeFamilyStarts = std::to_array<string_view>(
    {"Mül", "Grün", "Stein", "Schön", "Wein", "Rüb", "Kös", "Lüt", "Brand", "Weiß"});
constexpr auto kDeFamilyEnds =
    std::to_array<string_view>({"ler", "berg", "hoff", "bach", "egger", "häuser", "mann", "lein"});
constexpr auto kDeBands = std::to_array<string_view>({"Kapelle %f", "%f und Söhne", "Die %n"});
constexpr auto kDeSongs =
    std::to_array<string_view>({"%n über %p", "%n und %n in %p", "So %a, so %a: %n",
                                "Zu %a für %n (%d)", "%n ohne %n, %g", "Hinter %p: %n und %n"});
constexpr auto kDeAlbums = std::to_array<string_view>({"%n aus %p", "%n & %n", "%p, Band %d"});

// Polish
constexpr auto kPlAdjectives =
    std::to_array<string_view>({"cicho", "późno", "źle", "żółto", "mgliście", "czujnie"});
constexpr auto kPlNouns =
    std::to_array<string_view>({"łąka", "świt", "gwiazda", "źródło", "żagiel", "księżyc", "mgła",
                                "wąwóz", "śnieg", "pień", "ćma", "ogień"});
constexpr auto kPlPlaces =
    std::to_array<string_view>({"Brzęczyn", "Łozów", "Śremianka", "Żółwiec"});
constexpr auto kPlGiven = std::to_array<string_view>(
    {"Bożena", "Łucja", "Paweł", "Żaneta", "Zdzisław", "Jagna", "Święto", "Olek"});
constexpr auto kPlFamilyStarts =
    std::to_array<string_view>({"Brzo", "Wiś", "Kłos", "Dąb", "Górz", "Łab", "Miał", "Żur"});
constexpr auto kPlFamilyEnds =
    std::to_array<string_view>({"czyk", "niak", "owicz", "ień", "ęcki", "ąb"});
constexpr auto kPlBands = std::to_array<string_view>({"%f i Spółka", "Kapela z %p"});
constexpr auto kPlSongs = std::to_array<string_view>(
    {"%n i %n nad %p", "Gdzie jest %n, %g?", "%a, %a: %n", "%n nr %d, %n"});
constexpr auto kPlAlbums = std::to_array<string_view>({"%n, %n", "%p: część %d"});

// Russian
constexpr auto kRuAdjectives =
    std::to_array<string_view>({"тихо", "светло", "ещё", "поздно", "далёко", "зелено", "опять"});
constexpr auto kRuNouns =
    std::to_array<string_view>({"Дождь", "Река", "Окно", "Фонарь", "Ёлка", "Поезд", "Снег",
                                "Журавль", "Письмо", "Сад", "Лодка", "Звезда", "Чайник", "Мост"});
constexpr auto kRuPlaces = std::to_array<string_view>({"Верхнеозёрск", "Малый Яр", "Подъельск"});
constexpr auto kRuGiven = std::to_array<string_view>(
    {"Арсений", "Фёкла", "Юлий", "Злата", "Савва", "Лада", "Тимур", "Ия"});
constexpr auto kRuFamilyStarts =
    std::to_array<string_view>({"Берез", "Коров", "Жаров", "Лукь", "Мыш", "Щегл", "Яблон", "Туч"});
constexpr auto kRuFamilyEnds =
    std::to_array<string_view>({"кин", "ский", "ёв", "енко", "цев", "ин"});
constexpr auto kRuBands = std::to_array<string_view>({"Ансамбль «%n»", "%n и %n", "Хор %p"});
constexpr auto kRuSongs = std::to_array<string_view>(
    {"%n и %n, %a", "Там, где %n — %n", "%n №%d (%a)", "«%n» для %g", "%a %a %n, %n"});
constexpr auto kRuAlbums = std::to_array<string_view>({"%n над %p", "%n. Том %d", "%n, %n, %n"});

// Greek: many words end in a final sigma.
constexpr auto kElAdjectives =
    std::to_array<string_view>({"μεγάλος", "μικρός", "παλιός", "ήσυχος", "γλυκός", "μόνος"});
constexpr auto kElNouns =
    std::to_array<string_view>({"Δρόμος", "Ήλιος", "Ουρανός", "Άνεμος", "Κήπος", "Σταθμός",
                                "Θάλασσα", "Νησί", "Φάρος", "Χρόνος", "Ώρα", "Καΐκι"});
constexpr auto kElPlaces = std::to_array<string_view>({"Αλμυρόπολις", "Κάτω Λεύκες", "Πετρανήσι"});
constexpr auto kElGiven =
    std::to_array<string_view>({"Άγγελος", "Μυρτώ", "Φοίβος", "Δανάη", "Ίων", "Θάλεια"});
constexpr auto kElFamilyStarts =
    std::to_array<string_view>({"Καρα", "Μαυρ", "Παλαι", "Τριαντ", "Ψαρ", "Ξεν"});
constexpr auto kElFamilyEnds =
    std::to_array<string_view>({"ίδης", "άκης", "όπουλος", "ής", "έας", "ιάδης"});
constexpr auto kElBands = std::to_array<string_view>({"Ο %a %n", "%f και %f", "Χορωδία «%p»"});
constexpr auto kElSongs = std::to_array<string_view>(
    {"Ο %a %n και ο %a %n", "%n, %n, %n", "%n για την %g %d", "Πού πας, %g; (%n)"});
constexpr auto kElAlbums = std::to_array<string_view>({"%n στην %p", "%a %n", "%n Νο. %d"});

// Japanese
constexpr auto kJaAdjectives =
    std::to_array<string_view>({"青い", "静かな", "遠い", "小さな", "優しい", "古い", "がんばる"});
constexpr auto kJaNouns =
    std::to_array<string_view>({"海", "夜空", "電車", "桜", "手紙", "ペンギン", "雨", "喫茶店",
                                "灯台", "ギター", "約束", "パズル", "月", "風車"});
constexpr auto kJaPlaces =
    std::to_array<string_view>({"霧ヶ浜", "ソラ町", "三日月峠", "ドングリ坂"});
constexpr auto kJaGiven =
    std::to_array<string_view>({"ミナト", "さくや", "ヒカリ", "そうた", "ノゾミ", "れん"});
constexpr auto kJaFamilyStarts = std::to_array<string_view>({"霧", "風", "白", "星", "砂", "雪"});
constexpr auto kJaFamilyEnds =
    std::to_array<string_view>({"ヶ谷", "野原", "ノ宮", "浜", "塚", "森"});
constexpr auto kJaPeople = std::to_array<string_view>({"%f %g", "%f　%g"});
constexpr auto kJaBands = std::to_array<string_view>({"%a%nズ", "%n・%n", "%p合唱団"});
constexpr auto kJaSongs =
    std::to_array<string_view>({"%a%nと%n", "%pの%a%n", "%n〜%n〜", "%a%n（%d番）", "%gの%n、%n"});
constexpr auto kJaAlbums = std::to_array<string_view>({"%n物語 %d", "%a%n", "%pの%n"});

// Names as people type them on a telephone.
constexpr auto kTextAdjectives = std::to_array<string_view>({"lo-fi", "24/7", "TOO MUCH", "@home"});
constexpr auto kTextNouns = std::to_array<string_view>(
    {"🌊", "🔥", "👩‍🚀", "🌙", "🐳", "☕️", "🚲", "🇪🇺", "🍋", "⭐️", "💿", "🌵"});
constexpr auto kTextPlaces = std::to_array<string_view>({"the net", "room #3", "C:\\temp"});
constexpr auto kTextGiven = std::to_array<string_view>({"xXx", "nul", "&co", "k1rby.exe"});
constexpr auto kTextFamilyStarts = std::to_array<string_view>({"sk", "vo", "dr", "zu", "mm"});
constexpr auto kTextFamilyEnds = std::to_array<string_view>({"ll", "id", "øn", "√2", "++"});
constexpr auto kTextBands = std::to_array<string_view>({"%n%f%n", "%f & %f", "%f 💔"});
constexpr auto kTextSongs = std::to_array<string_view>(
    {"%n%n%n (%a)", "%a %n%n feat. %g%f", "%f.wav %d%%", "%n > %n = \"%f\" %d"});
constexpr auto kTextAlbums = std::to_array<string_view>({"%n%n", "mixtape %d %n", "%f [%a]"});

constexpr auto kPeople = std::to_array<string_view>({"%g %f", "%g %f", "%g-%g %f"});

constexpr std::array kLanguages{
    Language{kEnAdjectives, kEnNouns, kEnPlaces, kEnGiven, kEnFamilyStarts, kEnFamilyEnds,
             kEnPeople, kEnBands, kEnSongs, kEnAlbums, " (Live)"},
    Language{kFrAdjectives, kFrNouns, kFrPlaces, kFrGiven, kFrFamilyStarts, kFrFamilyEnds, kPeople,
             kFrBands, kFrSongs, kFrAlbums, " (en public)"},
    Language{kDeAdjectives, kDeNouns, kDePlaces, kDeGiven, kDeFamilyStarts, kDeFamilyEnds, kPeople,
             kDeBands, kDeSongs, kDeAlbums, " (Konzertfassung)"},
    Language{kPlAdjectives, kPlNouns, kPlPlaces, kPlGiven, kPlFamilyStarts, kPlFamilyEnds, kPeople,
             kPlBands, kPlSongs, kPlAlbums, " (na żywo)"},
    Language{kRuAdjectives, kRuNouns, kRuPlaces, kRuGiven, kRuFamilyStarts, kRuFamilyEnds, kPeople,
             kRuBands, kRuSongs, kRuAlbums, " (концерт)"},
    Language{kElAdjectives, kElNouns, kElPlaces, kElGiven, kElFamilyStarts, kElFamilyEnds, kPeople,
             kElBands, kElSongs, kElAlbums, " (ζωντανά)"},
    Language{kJaAdjectives, kJaNouns, kJaPlaces, kJaGiven, kJaFamilyStarts, kJaFamilyEnds,
             kJaPeople, kJaBands, kJaSongs, kJaAlbums, "（ライブ）"},
    Language{kTextAdjectives, kTextNouns, kTextPlaces, kTextGiven, kTextFamilyStarts,
             kTextFamilyEnds, kPeople, kTextBands, kTextSongs, kTextAlbums, " [live!!]"},
};
// How many of a thousand artists sing in each.
constexpr std::array<std::uint32_t, kLanguages.size()> kLanguageShares{620, 100, 90, 40,
                                                                       50,  40,  40, 20};

constexpr auto kGenres = std::to_array<string_view>(
    {"Rock", "Pop", "Jazz", "Folk", "Electronic", "Classical", "Hip-Hop/Rap", "R&B/Soul", "Blues",
     "Country", "Soundtrack", "Ambient", "Chanson", "Шансон", "Λαϊκά", "アニメ", "World",
     "Alternative & Punk"});
constexpr auto kRemarks = std::to_array<string_view>(
    {"Ripped from the CD", "From Jo's \"summer\" tape & the B side", "a < b > c, says the label",
     "Line one\nLine two\n\n\tand an indented fourth", "bought 12/2009", "Second pressing",
     "Side A ]]> Side B", "Café ✂︎ edit\r\nsecond line", "%41 is not an A here + 100%",
     "https://music.example/track?id=7&amp;lang=en", "'single' and `grave` and \\backslash\\",
     "00000A2B 00000A2B 00003C51 00003C51 0002BF20 0002BF20 00007FFF 00007FFF"});
constexpr auto kGroupings =
    std::to_array<string_view>({"Dinner", "Running", "Häuslich", "Set 1; Set 2", "№ 5", "朝"});

}  // namespace

std::span<const Language> languages() { return kLanguages; }

const Language& pickLanguage(Random& random) {
  std::uint32_t left = random.below(1000);
  std::size_t index = 0;
  while (left >= kLanguageShares[index]) left -= kLanguageShares[index++];
  return kLanguages[index];
}

std::string fillPattern(string_view pattern, const Language& language, Random& random) {
  std::string text;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    if (pattern[i] != '%') {
      text += pattern[i];
      continue;
    }
    switch (pattern[++i]) {
      case 'a':
        text += random.pick(language.adjectives);
        break;
      case 'n':
        text += random.pick(language.nouns);
        break;
      case 'p':
        text += random.pick(language.places);
        break;
      case 'g':
        text += random.pick(language.givenNames);
        break;
      case 'f':
        text += random.pick(language.familyStarts);
        text += random.pick(language.familyEnds);
        break;
      case 'd':
        text += std::to_string(random.between(1, 40));
        break;
      default:
        text += pattern[i];
    }
  }
  return text;
}

Words genres() { return kGenres; }
Words remarks() { return kRemarks; }
Words groupings() { return kGroupings; }

}  // namespace kestrel::make_library
