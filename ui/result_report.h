/// The groups of a result as a document: for spreadsheets, for programs, or to be printed.
///
/// Written group by group, so that a million tracks take no memory. One thread at a time.
#pragma once

#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <vector>

#include "ui/table_columns.h"

namespace kestrel {

enum class ReportFormat : std::uint8_t {
  csv,   ///< RFC 4180: a line for each track, under a line of titles
  json,  ///< {"title","groups":[{"group","reason","tracks":[{"kept", COLUMN: text ...}]}]}
  html   ///< one file that needs no other
};

struct ReportOptions {
  ReportFormat format = ReportFormat::csv;
  std::string title;
  std::vector<const TableColumn*> columns;  ///< none of them the check box
  bool keeperValue = true;                  ///< the keeper flag's value in a keeper
  MessageText inWords = inEnglish;          ///< of titles and cells; JSON has keys for titles
  /// A small picture of a track's cover as a data address; empty without one. Only for HTML.
  std::function<std::string(const ResultTrack&)> cover;
};

class ResultReport {
 public:
  /// All must outlive this. Begins the document.
  ResultReport(std::ostream& out, ReportOptions options, ShortDateTimeFormatter& dates);
  /// A group with why its keeper is kept, a clause.
  void add(std::span<const ResultTrack* const> tracks, const std::string& reason);
  void end();

 private:
  void addCsv(std::span<const ResultTrack* const> tracks, const std::string& reason);
  void addJson(std::span<const ResultTrack* const> tracks, const std::string& reason);
  void addHtml(std::span<const ResultTrack* const> tracks, const std::string& reason);
  [[nodiscard]] bool isKept(const ResultTrack& track) const {
    return track.tCheckbox == options_.keeperValue;
  }
  [[nodiscard]] std::string cell(const TableColumn& column, const ResultTrack& track) const {
    return displayedText(column, track, dates_, options_.inWords);
  }
  [[nodiscard]] std::string words(const Message& message) const {
    return options_.inWords(message);
  }

  std::ostream& out_;
  const ReportOptions options_;
  ShortDateTimeFormatter& dates_;
  std::size_t groups_ = 0;
};

}  // namespace kestrel
