#include "foundation/collation.h"

#include <gtest/gtest.h>
#include <vector>

#include "foundation/text_helpers.h"

namespace kestrel {
namespace {

int sign(int number) { return (number > 0) - (number < 0); }

TEST(Collation, IgnoresCaseButNotAccents) {
  const struct {
    std::string locale, a, b;
    int order;
  } cases[] = {
      {"en", "abc", "ABC", 0},
      {"en", "abc", "Abd", -1},
      {"en", "B", "a", 1},
      {"en", "Beyonce", "Beyoncé", -1},
      {"en", "Beyoncé", "BEYONCE\u0301", 0},  // composed and decomposed
      {"en", "a\u0323\u0302", "a\u0302\u0323", 0},
      {"en", "", "a", -1},
      {"en", "Motörhead", "Motozz", -1},
      {"sv", "Motörhead", "Motozz", 1},  // a letter of its own, after z
      {"en_US_POSIX", "abc", "ABC", 0},  // a machine without a locale
      {"xx_YY", "abc", "ABC", 0},        // no such locale
      {"en", "a\xFF", "a\uFFFD", 0},
  };
  for (const auto& [locale, a, b, order] : cases) {
    const TextCollator collator(locale);
    EXPECT_EQ(collator.compare(a, b), order) << locale << a << b;
    EXPECT_EQ(collator.compare(b, a), -order) << locale << a << b;
    EXPECT_EQ(sign(collator.sortKey(a).compare(collator.sortKey(b))), order) << locale << a << b;
  }
  EXPECT_EQ(TextCollator::users().compare("kestrel", "KESTREL"), 0);
}

TEST(Collation, StandardOrderCountsNumbers) {
  const TextCollator collator("en", TextOrder::standard);
  const std::vector<std::vector<const char*>> ascending = {
      {"", "Track 2", "Track 10", "track 11"},
      {"3 of 9", "3 of 12", "12"},
      {"007", "8", "99999999999999999998", "99999999999999999999", "a"},
      {"abba", "Abba", "ABBA", "abbc"},  // letter case decides last, but it decides
      {"Beyonce", "Beyoncé", "Beyonce 2"},
  };
  for (const auto& texts : ascending) {
    for (std::size_t i = 1; i < texts.size(); ++i) {
      EXPECT_EQ(collator.compare(texts[i - 1], texts[i]), -1) << texts[i - 1] << " " << texts[i];
      EXPECT_EQ(collator.compare(texts[i], texts[i - 1]), 1) << texts[i - 1] << " " << texts[i];
      EXPECT_LT(collator.sortKey(texts[i - 1]), collator.sortKey(texts[i])) << texts[i];
    }
  }
  EXPECT_EQ(collator.compare("Beyoncé", "Beyonce\u0301"), 0);
  EXPECT_EQ(TextCollator::users(TextOrder::standard).compare("Vol. 9", "Vol. 10"), -1);
  EXPECT_EQ(TextCollator::users().compare("Vol. 9", "Vol. 10"), 1) << "the two orders differ";
}

TEST(Collation, SortKeysOfLongTextsAreWhole) {
  const TextCollator collator("en");
  const std::string longText(5000, 'q');
  EXPECT_LT(collator.sortKey(longText), collator.sortKey(longText + "a"));
  EXPECT_EQ(collator.sortKey(longText), collator.sortKey(std::string(5000, 'Q')));
}

TEST(LetterCase, LowersByFullMapping) {
  const std::vector<std::pair<std::string_view, std::string_view>> cases = {
      {"", ""},
      {"@AZ[`az{ 0189 LONGER THAN EIGHT", "@az[`az{ 0189 longer than eight"},
      {"EIGHTBYT", "eightbyt"},
      {"Motörhead ÄÖÜ", "motörhead äöü"},
      {"ΟΔΟΣ ΣΑΣ", "οδος σας"},  // final sigma
      {"ΟΔΟΣΑ", "οδοσα"},
      {"İI", "i\u0307i"},
      {"ẞ", "ß"},
      {"ÄA\xFFZ", "äa\xFFz"},
  };
  std::string buffer = "left over from the text before, and longer than all of these together";
  for (const auto& [text, lower] : cases) {
    EXPECT_EQ(lowercase(text), lower);
    lowercaseInto(text, buffer);
    EXPECT_EQ(buffer, lower);
  }
}

TEST(LetterCase, EqualityIgnoresCaseAndComposition) {
  const std::vector<std::pair<const char*, const char*>> same = {
      {"", ""}, {"AbC[", "aBc["}, {"ÉTÉ", "e\u0301te\u0301"}, {"STRASSE", "straße"}};
  for (const auto& [a, b] : same) EXPECT_TRUE(sameIgnoringCase(a, b)) << a;
  const std::vector<std::pair<const char*, const char*>> different = {
      {"a", ""}, {"[", "{"}, {"@", "`"}, {"été", "ete"}, {"ab", "abc"}};
  for (const auto& [a, b] : different) EXPECT_FALSE(sameIgnoringCase(a, b)) << a;
}

}  // namespace
}  // namespace kestrel
