#include "ui/result_report.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <utility>

#include "foundation/csv.h"
#include "foundation/utf8.h"

namespace kestrel {
namespace {

/// For the text of an element or, in double quotes, of an attribute.
std::string htmlText(std::string_view text) {
  std::string shown = printable(text), out;
  for (const char c : shown) {
    if (c == '&')
      out += "&amp;";
    else if (c == '<')
      out += "&lt;";
    else if (c == '>')
      out += "&gt;";
    else if (c == '"')
      out += "&quot;";
    else
      out += c;
  }
  return out;
}

std::string jsonText(const nlohmann::ordered_json& value) {
  return value.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

/// Readable on paper, and on light and dark screens.
constexpr std::string_view styleOfReport = R"(<style>
:root { color-scheme: light dark; }
body { font: 14px/1.4 system-ui, sans-serif; max-width: 72rem; margin: 2rem auto; padding: 0 1rem; }
h1 { font-size: 1.5rem; }
section { display: flex; gap: 1rem; padding: .75rem 0; border-top: 1px solid #8888;
  break-inside: avoid; }
section > img, section > .none { width: 64px; height: 64px; border-radius: 4px; flex: none;
  background: #8883; object-fit: cover; }
section > div:last-child { flex: 1; min-width: 0; }
h2 { font-size: 1rem; margin: 0; }
h2 span, .why, tr.other { opacity: .75; }
.why { margin: .1rem 0 .4rem; }
table { border-collapse: collapse; width: 100%; font-size: .85rem; }
th, td { text-align: left; padding: .15rem .5rem .15rem 0; vertical-align: top;
  overflow-wrap: anywhere; }
th { font-weight: normal; opacity: .75; }
th.number, td.number { text-align: right; font-variant-numeric: tabular-nums; }
tr.kept { font-weight: 600; }
</style>
)";

std::string_view classOf(const TableColumn& column) {
  return column.alignment == ColumnAlignment::right ? " class=\"number\"" : "";
}

}  // namespace

ResultReport::ResultReport(std::ostream& out, ReportOptions options, ShortDateTimeFormatter& dates)
    : out_(out), options_(std::move(options)), dates_(dates) {
  const auto title = [&](const TableColumn& column) {
    return words(Message::tr(column.title.data()));
  };
  switch (options_.format) {
    case ReportFormat::csv:
      out_ << csvField(words(Message::tr("Group"))) << ',' << csvField(words(Message::tr("Kept")));
      for (const TableColumn* column : options_.columns) out_ << ',' << csvField(title(*column));
      out_ << ',' << csvField(words(Message::tr("Because"))) << "\r\n";
      break;
    case ReportFormat::json:
      out_ << "{\"title\":" << jsonText(options_.title) << ",\"groups\":[";
      break;
    case ReportFormat::html:
      out_ << "<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\">\n<title>"
           << htmlText(options_.title) << "</title>\n"
           << styleOfReport << "</head>\n<body>\n<h1>" << htmlText(options_.title) << "</h1>\n";
      break;
  }
}

void ResultReport::add(std::span<const ResultTrack* const> tracks, const std::string& reason) {
  if (tracks.empty()) return;
  switch (options_.format) {
    case ReportFormat::csv:
      addCsv(tracks, reason);
      break;
    case ReportFormat::json:
      addJson(tracks, reason);
      break;
    case ReportFormat::html:
      addHtml(tracks, reason);
      break;
  }
  ++groups_;
}

void ResultReport::addCsv(std::span<const ResultTrack* const> tracks, const std::string& reason) {
  for (const ResultTrack* track : tracks) {
    out_ << track->tGroupID << ',' << (isKept(*track) ? 1 : 0);
    for (const TableColumn* column : options_.columns)
      out_ << ',' << csvField(cell(*column, *track));
    out_ << ',' << (isKept(*track) ? csvField(reason) : std::string()) << "\r\n";
  }
}

void ResultReport::addJson(std::span<const ResultTrack* const> tracks, const std::string& reason) {
  auto rows = nlohmann::ordered_json::array();
  for (const ResultTrack* track : tracks) {
    nlohmann::ordered_json row{{"kept", isKept(*track)}};
    for (const TableColumn* column : options_.columns)
      row[std::string(column->identifier)] = cell(*column, *track);
    rows.push_back(std::move(row));
  }
  out_ << (groups_ > 0 ? ",\n" : "\n")
       << jsonText({{"group", tracks.front()->tGroupID},
                    {"reason", reason},
                    {"tracks", std::move(rows)}});
}

void ResultReport::addHtml(std::span<const ResultTrack* const> tracks, const std::string& reason) {
  const ResultTrack* kept = nullptr;
  for (const ResultTrack* track : tracks)
    if (!kept && isKept(*track)) kept = track;
  const ResultTrack& shown = kept ? *kept : *tracks.front();
  const std::string cover = options_.cover ? options_.cover(shown) : std::string();
  out_ << "<section>\n";
  if (cover.empty())
    out_ << "<div class=\"none\"></div>\n";
  else
    out_ << "<img alt=\"\" src=\"" << htmlText(cover) << "\">\n";
  out_ << "<div>\n<h2>" << htmlText(shown.record->value(TrackKey::tName).text()) << " <span>"
       << htmlText(shown.record->value(TrackKey::tArtist).text())
       << "</span></h2>\n<p class=\"why\">"
       << htmlText(kept ? words(Message::tr("Kept: %1").arg(reason))
                        : words(Message::tr("Nothing is kept yet")))
       << "</p>\n<table>\n<tr><th></th>";
  for (const TableColumn* column : options_.columns)
    out_ << "<th" << classOf(*column) << '>' << htmlText(words(Message::tr(column->title.data())))
         << "</th>";
  out_ << "</tr>\n";
  for (const ResultTrack* track : tracks) {
    out_ << "<tr class=\"" << (isKept(*track) ? "kept" : "other") << "\"><td>"
         << (isKept(*track) ? "●" : "○") << "</td>";
    for (const TableColumn* column : options_.columns)
      out_ << "<td" << classOf(*column) << '>' << htmlText(cell(*column, *track)) << "</td>";
    out_ << "</tr>\n";
  }
  out_ << "</table>\n</div>\n</section>\n";
}

void ResultReport::end() {
  if (options_.format == ReportFormat::json) out_ << "\n]}\n";
  if (options_.format == ReportFormat::html) out_ << "</body>\n</html>\n";
}

}  // namespace kestrel
