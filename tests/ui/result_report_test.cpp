#include "ui/result_report.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

#include "foundation/dates.h"
#include "tests/dupes/builders.h"

namespace kestrel {
namespace {

using namespace kestrel::testing;

std::string reported(ReportFormat format, const std::vector<TrackBuilder>& tracks) {
  std::vector<ResultTrack> rows = World(tracks).rows();
  rows.front().tCheckbox = true;
  ReportOptions options;
  options.format = format;
  options.title = "A & B";
  options.columns = {tableColumn("tName"), tableColumn("tArtist")};
  options.cover = [](const ResultTrack&) { return "data:image/png;base64,AA=="; };
  std::ostringstream out;
  ShortDateTimeFormatter dates("en_GB", "UTC");
  ResultReport report(out, options, dates);
  report.add(pointers(rows), "most \"played\"");
  report.add({}, "nothing");
  report.end();
  return out.str();
}

const std::vector<TrackBuilder> names = {track("One, \"two\"").by("=1+1"),
                                         track("<b>\n&\xFF").by("Ü")};

TEST(ResultReport, SpreadsheetsReadItsFields) {
  EXPECT_EQ(reported(ReportFormat::csv, names),
            "Group,Kept,Name,Artist,Because\r\n"
            "0,1,\"One, \"\"two\"\"\",'=1+1,\"most \"\"played\"\"\"\r\n"
            "0,0,<b> &\uFFFD,Ü,\r\n");
}

TEST(ResultReport, ProgramsReadItsGroups) {
  const auto read = nlohmann::json::parse(reported(ReportFormat::json, names));
  EXPECT_EQ(read["title"], "A & B");
  ASSERT_EQ(read["groups"].size(), 1U);
  const auto& tracks = read["groups"][0]["tracks"];
  EXPECT_EQ(tracks[0]["tName"], "One, \"two\"");
  EXPECT_EQ(tracks[0]["kept"], true);
  EXPECT_EQ(tracks[1]["tArtist"], "Ü");
  EXPECT_EQ(read["groups"][0]["reason"], "most \"played\"");
}

TEST(ResultReport, NamesAreNoMarkup) {
  const std::string page = reported(ReportFormat::html, names);
  EXPECT_NE(page.find("<title>A &amp; B</title>"), std::string::npos);
  EXPECT_NE(page.find("<td>&lt;b&gt; &amp;\uFFFD</td>"), std::string::npos) << page;
  EXPECT_EQ(page.find("<b>"), std::string::npos);
  EXPECT_NE(page.find("src=\"data:image/png;base64,AA==\""), std::string::npos);
  // It needs no other file and no network.
  EXPECT_EQ(page.find("http"), std::string::npos);
}

}  // namespace
}  // namespace kestrel
